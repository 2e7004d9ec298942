// The last exact cut of a portrait: a frame out of a picture, scaled by one factor to exactly so many pixels.
#pragma once

#include "tools/documents/frame.h"
#include "tools/support/picture.h"

namespace orvane::tools {

/// Rows of a picture as the library has them: the bottom row first, three bytes a pixel.
struct PictureRows {
    const uint8* bottom = nullptr;
    int32 width = 0;
    int32 height = 0;
    int32 step = 0;
};

/// Cuts `frame`, in pixels of `source` with y downwards, and scales it so that its height has `height` pixels; its
/// width comes out within a pixel of `width` by the same factor. What lies beyond the source is filled: with a colour,
/// or with the nearest pixel where `fill` has none. False when memory does not suffice.
bool CutFrame(const PictureRows& source, const PlaneRect& frame, int32 width, int32 height, const Fill& fill,
              Picture* portrait);

} // namespace orvane::tools
