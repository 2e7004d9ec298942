// A picture as a window shows it.
#pragma once

#include "session/window.h"

#include <cstddef>
#include <vector>

namespace orvane::test {

struct ShownPicture {
    int32 width = 0;
    int32 height = 0;
    std::vector<uint8> rows; // bottom row first

    ShownPicture() = default;
    explicit ShownPicture(PictureView view) : width(view.width), height(view.height) {
        rows.assign(view.bits, view.bits + static_cast<std::ptrdiff_t>(Step()) * height);
    }
    int32 Step() const { return (3 * width + 3) / 4 * 4; }
    /// The pixel at column x of row y from the top, as 0x00BBGGRR.
    ColourRef At(int32 x, int32 y) const {
        const uint8* pixel = rows.data() + static_cast<std::ptrdiff_t>(Step()) * (height - 1 - y) + 3 * x;
        return static_cast<ColourRef>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
    }
    /// Whether a pixel of it has this colour.
    bool Shows(ColourRef colour) const {
        for (int32 y = 0; y < height; ++y) {
            for (int32 x = 0; x < width; ++x) {
                if (At(x, y) == colour) return true;
            }
        }
        return false;
    }
    bool operator==(const ShownPicture&) const = default;
};

} // namespace orvane::test
