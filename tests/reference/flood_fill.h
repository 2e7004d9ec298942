// The flood fill once more: pixel by pixel, with a list of its own, whatever the shape.
#pragma once

#include "primitives/flood_fill.h"
#include "tests/support/plane.h"

#include <algorithm>
#include <vector>

namespace orvane::test::reference {

inline ConnectedRegion FloodFill(Plane<uint8>& plane, ImageSize roi, ImagePoint seed, uint8 newValue,
                                 int32 neighbours) {
    static constexpr ImagePoint kSteps[8] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {-1, 1}, {1, -1}, {-1, -1}};
    const uint8 old = plane.At(seed.x, seed.y);
    std::vector<ImagePoint> reached = {seed};
    plane.At(seed.x, seed.y) = newValue;
    for (std::size_t next = 0; next < reached.size(); ++next) {
        for (int32 k = 0; k < neighbours; ++k) {
            const ImagePoint p{reached[next].x + kSteps[k].x, reached[next].y + kSteps[k].y};
            if (p.x < 0 || p.y < 0 || p.x >= roi.width || p.y >= roi.height || plane.At(p.x, p.y) != old) continue;
            plane.At(p.x, p.y) = newValue;
            reached.push_back(p);
        }
    }
    int32 left = seed.x, right = seed.x, top = seed.y, bottom = seed.y;
    for (const ImagePoint p : reached) {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        top = std::min(top, p.y);
        bottom = std::max(bottom, p.y);
    }
    return {static_cast<double>(reached.size()),
            {static_cast<double>(newValue), 0, 0},
            {left, top, right - left + 1, bottom - top + 1}};
}

} // namespace orvane::test::reference
