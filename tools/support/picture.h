// A picture in the form that the library takes and gives: what lies between a picture file and a
// packed bitmap.
#pragma once

#include "primitives/types.h"
#include "tools/support/pixel_block.h"

#include <cstddef>

namespace orvane::tools {

/// Caps of every picture that is read: pixels a side, and pixels in all.
inline constexpr int64 kMaxPictureSide = 32767;
inline constexpr int64 kMaxPicturePixels = 268000000;

/// 24-bit rows, the bottom row of the picture first, each pixel blue, green, red. Padding is zero.
struct Picture {
    int32 width = 0;
    int32 height = 0;
    int32 step = 0;    ///< Bytes of a row: three a pixel, rounded up to a multiple of 4.
    PixelBlock pixels; ///< `step` times `height` bytes.
};

/// Bytes of a row of `width` pixels.
constexpr int32 PictureStep(int32 width) { return (width * 3 + 3) / 4 * 4; }

/// Bytes of a picture's rows; the size is within the caps.
constexpr std::size_t PictureBytes(int32 width, int32 height) {
    return static_cast<std::size_t>(PictureStep(width)) * static_cast<std::size_t>(height);
}

/// Whether a picture of this size is within the caps and not empty.
constexpr bool IsPictureSizeAllowed(int64 width, int64 height) {
    return width > 0 && height > 0 && width <= kMaxPictureSide && height <= kMaxPictureSide &&
           width * height <= kMaxPicturePixels;
}

} // namespace orvane::tools
