// Rectangles of one value in a plane.
#pragma once

#include "image/image_buffer.h"
#include "primitives/bit_plane.h"

namespace orvane {

/// A rectangle that may lie anywhere.
struct PaintedRect {
    int64 x, y;
    int64 width, height;
};

/// Sets those pixels of a one-channel 8-bit plane that lie in `rect`; what lies beyond the plane is left out.
/// Status, in order of test: a plane without storage -8; a size of `rect` below 1 -6.
int32 PaintRect(ImageBuffer& plane, PaintedRect rect, uint8 value);

/// Marks those pixels of a plane that lie in `rect`, likewise. Status: a size of `rect` below 1 -6.
int32 MarkRect(BitPlane& plane, PaintedRect rect);

} // namespace orvane
