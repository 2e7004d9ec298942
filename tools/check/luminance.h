// The luminance of a part of a picture, on which the measures work.
#pragma once

#include "primitives/types.h"
#include "tools/support/picture.h"

#include <cstddef>
#include <vector>

namespace orvane::tools {

/// Levels from 0 to 255, the top row first.
struct Luminance {
    int32 width = 0;
    int32 height = 0;
    std::vector<uint8> levels;

    uint8 At(int32 x, int32 y) const {
        return levels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
};

/// What of `part`, whose y counts from the picture's top, lies in the picture: 0.299 R + 0.587 G + 0.114 B of the bytes
/// as they are, rounded to the nearest.
Luminance LuminanceOf(const Picture& picture, const ImageRect& part);

} // namespace orvane::tools
