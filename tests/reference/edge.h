// The gradient filters and the Canny edge detector once more: whole planes, one pixel at a time.
#pragma once

#include "primitives/types.h"
#include "tests/support/plane.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace orvane::test::reference {

/// Correlation with `column` along y and `row` along x. `constant` puts `value` around the plane, else
/// the nearest pixel stands there.
inline void Gradient(const Plane<uint8>& src, Plane<int16>& dst, ImageSize roi, const std::vector<int32>& column,
                     const std::vector<int32>& row, bool constant, int32 value) {
    const auto pixel = [&](int32 x, int32 y) -> int32 {
        const bool inside = x >= 0 && y >= 0 && x < roi.width && y < roi.height;
        if (!inside && constant) return value;
        return src.At(std::clamp(x, 0, roi.width - 1), std::clamp(y, 0, roi.height - 1));
    };
    const auto radius = static_cast<int32>(column.size()) / 2;
    for (int32 y = 0; y < roi.height; ++y) {
        for (int32 x = 0; x < roi.width; ++x) {
            int32 sum = 0;
            for (int32 j = -radius; j <= radius; ++j) {
                for (int32 i = -radius; i <= radius; ++i) {
                    sum += column[static_cast<std::size_t>(j + radius)] * row[static_cast<std::size_t>(i + radius)] *
                           pixel(x + i, y + j);
                }
            }
            dst.At(x, y) = static_cast<int16>(sum);
        }
    }
}

inline void Canny(const Plane<int16>& dx, const Plane<int16>& dy, Plane<uint8>& dst, ImageSize roi, float lowThreshold,
                  float highThreshold) {
    const double low = std::trunc(lowThreshold);
    const auto inside = [&](int32 x, int32 y) { return x >= 0 && y >= 0 && x < roi.width && y < roi.height; };
    const auto magnitude = [&](int32 x, int32 y) -> int32 {
        if (!inside(x, y)) return 0;
        const int32 m = std::abs(int32{dx.At(x, y)}) + std::abs(int32{dy.At(x, y)});
        return m > low ? m : 0;
    };
    const auto survives = [&](int32 x, int32 y) {
        const int32 m = magnitude(x, y);
        if (m == 0) return false;
        const int32 gx = dx.At(x, y);
        const int32 gy = dy.At(x, y);
        const double a = std::abs(gx);
        const double b = std::abs(gy);
        if (b > 2.414213562373095 * a) return m > magnitude(x, y - 1) && m >= magnitude(x, y + 1);
        if (b < 0.41421356237309503 * a) return m > magnitude(x - 1, y) && m >= magnitude(x + 1, y);
        if (gx * gy < 0) return m > magnitude(x + 1, y - 1) && m > magnitude(x - 1, y + 1);
        return m > magnitude(x - 1, y - 1) && m > magnitude(x + 1, y + 1);
    };
    std::vector<std::pair<int32, int32>> open;
    std::vector<bool> ridge;
    for (int32 y = 0; y < roi.height; ++y) {
        for (int32 x = 0; x < roi.width; ++x) {
            ridge.push_back(survives(x, y));
            dst.At(x, y) = 0;
            if (ridge.back() && static_cast<float>(magnitude(x, y)) > highThreshold) {
                dst.At(x, y) = 255;
                open.emplace_back(x, y);
            }
        }
    }
    while (!open.empty()) {
        const auto [x, y] = open.back();
        open.pop_back();
        for (int32 v = y - 1; v <= y + 1; ++v) {
            for (int32 u = x - 1; u <= x + 1; ++u) {
                if (!inside(u, v) || dst.At(u, v) != 0) continue;
                if (!ridge[static_cast<std::size_t>(v) * static_cast<std::size_t>(roi.width) + u]) continue;
                dst.At(u, v) = 255;
                open.emplace_back(u, v);
            }
        }
    }
}

} // namespace orvane::test::reference
