// What stands in the preview once more: one pixel at a time, straight from the rules.
#pragma once

#include "tests/support/fake_window.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orvane::test::reference {

/// A picture's size within a limit, its proportions kept.
inline ImageSize Fitted(ImageSize picture, ImageSize limit) {
    const double aspect = static_cast<double>(picture.width) / picture.height;
    if (aspect > static_cast<double>(limit.width) / limit.height) {
        limit.height = static_cast<int32>(std::trunc(limit.width / aspect));
    } else {
        limit.width = static_cast<int32>(std::trunc(limit.height * aspect));
    }
    return limit;
}

inline uint8* PixelFromTop(ShownPicture& picture, int32 x, int32 y) {
    return picture.rows.data() + static_cast<std::ptrdiff_t>(picture.Step()) * (picture.height - 1 - y) + 3 * x;
}

/// Each pixel is the one that lies under its middle, counted from the picture's lower left corner.
inline ShownPicture Stretched(const ShownPicture& picture, ImageSize size) {
    ShownPicture result;
    result.width = size.width;
    result.height = size.height;
    result.rows.resize(static_cast<std::size_t>(result.Step()) * static_cast<std::size_t>(size.height));
    for (int32 y = 0; y < size.height; ++y) {
        for (int32 x = 0; x < size.width; ++x) {
            const std::int64_t fromX = (std::int64_t{2} * x + 1) * picture.width / (std::int64_t{2} * size.width);
            const std::int64_t fromY = (std::int64_t{2} * y + 1) * picture.height / (std::int64_t{2} * size.height);
            const uint8* from = picture.rows.data() + picture.Step() * fromY + 3 * fromX;
            std::copy_n(from, 3, result.rows.data() + result.Step() * std::int64_t{y} + 3 * x);
        }
    }
    return result;
}

/// Whether a pen of three pixels on the way from (x0, y0) to (x1, y1), along a row or a column, covers (x, y).
inline bool Covers(double x0, double y0, double x1, double y1, double x, double y) {
    const double dx = std::max({std::min(x0, x1) - x, x - std::max(x0, x1), 0.0});
    const double dy = std::max({std::min(y0, y1) - y, y - std::max(y0, y1), 0.0});
    return dx <= 1 && dy <= 1;
}

/// The four sides of a rectangle; positions count from the upper left corner.
inline void DrawRectangle(ShownPicture& picture, double left, double top, double right, double bottom,
                          ColourRef colour) {
    for (int32 y = 0; y < picture.height; ++y) {
        for (int32 x = 0; x < picture.width; ++x) {
            if (Covers(left, top, right, top, x, y) || Covers(right, top, right, bottom, x, y) ||
                Covers(right, bottom, left, bottom, x, y) || Covers(left, bottom, left, top, x, y)) {
                uint8* pixel = PixelFromTop(picture, x, y);
                pixel[0] = static_cast<uint8>(colour >> 16);
                pixel[1] = static_cast<uint8>(colour >> 8);
                pixel[2] = static_cast<uint8>(colour);
            }
        }
    }
}

} // namespace orvane::test::reference
