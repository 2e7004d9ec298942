// Planes of bits from rules, and back.
#pragma once

#include "primitives/bit_plane.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace orvane::test {

/// Marks the pixels for which `isMarked(x, y)`.
template <typename Rule>
void MakeBitPlane(BitPlane& plane, ImageSize size, Rule isMarked) {
    if (!plane.Create(size)) std::abort();
    for (int32 y = 0; y < size.height; ++y) {
        for (int32 x = 0; x < size.width; ++x) {
            if (isMarked(x, y)) plane.Row(y)[x / 64] |= uint64{1} << x % 64;
        }
    }
}

/// Success when the pixels are marked for which `isMarked(x, y)`, and no bit behind a row's last pixel is set.
template <typename Rule>
::testing::AssertionResult IsMarkedWhere(const BitPlane& plane, Rule isMarked) {
    const ImageSize size = plane.Size();
    for (int32 y = 0; y < size.height; ++y) {
        for (int32 x = 0; x < size.width; ++x) {
            if (plane.Has({x, y}) != isMarked(x, y)) {
                return ::testing::AssertionFailure()
                       << "pixel " << x << ", " << y << " is " << (plane.Has({x, y}) ? "marked" : "not marked");
            }
        }
        const int32 last = plane.Words() - 1;
        if ((plane.Row(y)[last] & ~plane.PixelsOf(last)) != 0) {
            return ::testing::AssertionFailure() << "row " << y << " has marks behind its last pixel";
        }
    }
    return ::testing::AssertionSuccess();
}

} // namespace orvane::test
