// Pictures with levels that a test knows.
#pragma once

#include "tests/tools/picture_files.h"

#include <functional>

namespace orvane::tools {

/// A grey picture; the level of each pixel by its column and its row from the top.
inline Picture DrawnPicture(int32 width, int32 height, const std::function<int(int32 x, int32 y)>& level) {
    Picture picture = BlackPicture(width, height);
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            const int grey = level(x, y);
            SetPixel(picture, x, y, {grey, grey, grey});
        }
    }
    return picture;
}

inline Picture FlatPicture(int32 width, int32 height, int level) {
    return DrawnPicture(width, height, [level](int32, int32) { return level; });
}

} // namespace orvane::tools
