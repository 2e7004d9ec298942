// The window filters once more: from a copy of the plane, every window gathered anew.
#pragma once

#include "tests/support/plane.h"

#include <ostream>

namespace orvane::test::reference {

/// A region inside a plane, and the window that its pixels look through.
struct Window {
    ImageSize roi;
    ImageSize mask;
    ImagePoint anchor;
};

inline std::ostream& operator<<(std::ostream& out, const Window& w) {
    return out << "region " << w.roi.width << "x" << w.roi.height << ", mask " << w.mask.width << "x" << w.mask.height
               << ", anchor " << w.anchor.x << "," << w.anchor.y;
}

/// The region stands at (anchor.x, anchor.y) of the plane, so that all windows fit inside.
template <typename Result>
void FilterWindows(Plane<uint8>& plane, const Window& w, Result result) {
    const Plane<uint8> before = plane;
    for (int32 y = 0; y < w.roi.height; ++y) {
        for (int32 x = 0; x < w.roi.width; ++x) {
            plane.At(w.anchor.x + x, w.anchor.y + y) =
                result([&](int32 i, int32 j) { return before.At(x + i, y + j); });
        }
    }
}

inline void Erode(Plane<uint8>& plane, const Window& w, const uint8* mask) {
    FilterWindows(plane, w, [&](auto cell) {
        int32 smallest = 255;
        for (int32 k = 0; k < w.mask.width * w.mask.height; ++k) {
            const int32 value = cell(k % w.mask.width, k / w.mask.width);
            if (mask[k] && value < smallest) smallest = value;
        }
        return static_cast<uint8>(smallest);
    });
}

/// Multiplier and shift of the fixed-point division by an area.
struct FixedPoint {
    uint64 multiplier;
    int32 shift;
};

inline FixedPoint FixedPointOf(int32 area) {
    const float r = static_cast<float>(1.0 / area);
    if (r == 1.0f) return {256, 8};
    auto t = static_cast<uint64>(static_cast<double>(r) * 4294967296.0 + 0.000009);
    int32 n = 0;
    while ((t & 0x80000000u) == 0 && n < 24) {
        t = t * 2;
        ++n;
    }
    return {t / 1048576 + 1, n + 12};
}

inline void Box(Plane<uint8>& plane, const Window& w) {
    const int32 area = w.mask.width * w.mask.height;
    const FixedPoint f = FixedPointOf(area);
    FilterWindows(plane, w, [&](auto cell) {
        uint64 sum = 0;
        for (int32 j = 0; j < w.mask.height; ++j) {
            for (int32 i = 0; i < w.mask.width; ++i) sum += cell(i, j);
        }
        return static_cast<uint8>(area <= 8100 ? (f.multiplier * sum) >> f.shift : sum / area);
    });
}

} // namespace orvane::test::reference
