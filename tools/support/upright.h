// Stored pixels, in whatever order a decoder gives them, become the upright rows of a Picture.
#pragma once

#include "tools/support/picture.h"

#include <cstddef>

namespace orvane::tools {

/// Rows as a decoder leaves them, the top row first, 8 bits a sample.
struct StoredRows {
    const uint8* pixels = nullptr;
    int32 width = 0;
    int32 height = 0;
    std::ptrdiff_t pixel = 3; ///< Bytes from a pixel to the next.
    std::ptrdiff_t row = 0;   ///< Bytes from a row to the next.
    bool redFirst = false;    ///< Else blue is first.
    bool hasAlpha = false;    ///< A fourth sample, not multiplied into the others.
};

/// The picture as a person sees it: turned and mirrored as the EXIF orientation (1 to 8; any other value
/// is upright) tells, transparency laid over white. Throws std::bad_alloc.
Picture UprightPicture(const StoredRows& stored, int orientation);

/// The rows of `picture` from the top, into `rows` with `step` bytes from one to the next; red first or
/// blue first, three samples a pixel.
void CopyFromTheTop(const Picture& picture, bool redFirst, uint8* rows, std::ptrdiff_t step);

} // namespace orvane::tools
