// The operations on single pixels once more, straight from their formulas, one element at a time.
#pragma once

#include "tests/support/plane.h"

namespace orvane::test::reference {

/// Calls `body(x, y)` for every pixel of the region.
template <typename Body>
void ForEachPixel(ImageSize roi, Body body) {
    for (int32 y = 0; y < roi.height; ++y) {
        for (int32 x = 0; x < roi.width; ++x) body(x, y);
    }
}

inline void Grey(const Plane<uint8>& src, Plane<uint8>& dst, ImageSize roi) {
    ForEachPixel(roi, [&](int32 x, int32 y) {
        const int64 sum =
            int64{1225} * src.At(3 * x, y) + int64{2404} * src.At(3 * x + 1, y) + int64{467} * src.At(3 * x + 2, y);
        dst.At(x, y) = static_cast<uint8>(sum / 4096);
    });
}

} // namespace orvane::test::reference
