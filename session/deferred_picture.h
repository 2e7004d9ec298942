// The work picture of a session without a window. Nobody looks at it, so its size is all that there is at first: pixels
// are made when something reads them, and only those.
#pragma once

#include "actions/output_scaling.h"
#include "image/bitmap.h"

namespace orvane {

class DeferredPicture {
public:
    /// Promises `photo`, scaled. The photo must stay until Drop.
    void Promise(const Bitmap& photo, const OutputScaling& scaling);
    /// The same pixels now lie in `photo`; of an empty one nothing can be made.
    void MoveTo(const Bitmap& photo) { Promise(photo, scaling_); }
    /// Nothing is promised any longer; what was made stays.
    void Drop() { photo_.Reset(); }

    bool IsPromised() const { return photo_.data != nullptr; }
    ImageSize Size() const { return scaling_.size; }

    /// g_sourceImage takes the size of what is promised, without storage, and stands for it.
    void Present();
    /// Whether g_sourceImage is such a picture.
    bool IsPending() const;
    /// Gives a pending g_sourceImage its pixels. 0; -50 without memory, with g_sourceImage still without storage.
    int32 MakeWhole() const;
    /// Makes a part in the shape of three channels of 8. 0; -50 without storage, also for a part without pixels.
    int32 MakePart(const ImageRect& part, ImageBuffer& destination) const;
    /// Makes the whole as a bitmap. 0; -50 without memory, with the bitmap empty.
    int32 MakeBitmap(Bitmap& bitmap) const;

private:
    ImageBuffer photo_; // borrowed rows
    OutputScaling scaling_{};
};

extern DeferredPicture g_deferredPicture;

} // namespace orvane
