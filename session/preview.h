// What stands in the preview: finished bitmaps, scaled and with the marks drawn on them, in the order in
// which they were made.
#pragma once

#include "image/bitmap.h"
#include "session/window.h"

#include <deque>
#include <mutex>

namespace orvane {

/// Bitmaps on their way to the preview. Any thread may add one; the window's thread takes them. What is
/// never taken goes with the queue, and when very many wait the oldest go.
class PreviewQueue {
public:
    void Push(Bitmap bitmap);
    /// The oldest bitmap; empty when there is none.
    Bitmap Pop();
    void Clear();

private:
    std::mutex mutex_;
    std::deque<Bitmap> bitmaps_;
};

/// A bitmap as windows take it.
inline PictureView ViewOf(const Bitmap& bitmap) { return {bitmap.Bits(), bitmap.Width(), bitmap.Height()}; }

/// The largest size with the proportions of `picture` inside `limit`; a side may become 0.
ImageSize FitInside(ImageSize picture, ImageSize limit);

/// A picture stretched to a size: each pixel is the one of `picture` below its middle. Empty for a picture or a
/// size without pixels.
Bitmap Stretched(const PictureView& picture, ImageSize size);
inline Bitmap Stretched(const Bitmap& bitmap, ImageSize size) { return Stretched(ViewOf(bitmap), size); }

/// Corners of a rectangle, counted from the picture's upper left corner; in any order.
struct Corners {
    int32 left, top, right, bottom;
};

/// Draws the four sides with a pen 3 pixels wide; what lies outside the bitmap is left out.
void DrawRectangle(Bitmap& bitmap, const Corners& corners, ColourRef colour);

} // namespace orvane
