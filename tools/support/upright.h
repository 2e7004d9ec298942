// Stored pixels, in whatever order a decoder gives them, become the upright rows of a Picture, and these the rows that
// an encoder takes.
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

/// Turns rows of three samples a pixel over where they lie, `step` bytes apart: the last row comes first, and red and
/// blue change places where `swapColours`. Padding stays as it is. Throws std::bad_alloc.
void TurnOver(uint8* rows, int32 step, ImageSize size, bool swapColours);

} // namespace orvane::tools
