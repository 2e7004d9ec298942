// Integral images and standard deviations once more: every value from its own definition.
#pragma once

#include "primitives/types.h"
#include "tests/support/plane.h"

#include <cmath>

namespace orvane::test::reference {

/// The two planes row by row: each value is the one above it plus the row's pixels so far.
inline void SqrIntegral(const Plane<uint8>& src, Plane<float>& sum, Plane<double>& squares, ImageSize roi,
                        float sumInit, double squaresInit) {
    for (int32 i = 0; i <= roi.height; ++i) {
        for (int32 j = 0; j <= roi.width; ++j) {
            sum.At(j, i) = sumInit;
            squares.At(j, i) = squaresInit;
            if (i == 0 || j == 0) continue;
            double rowSum = 0;
            double rowSquares = 0;
            for (int32 x = 0; x < j; ++x) {
                const double p = src.At(x, i - 1);
                rowSum += p;
                rowSquares += p * p;
            }
            sum.At(j, i) = static_cast<float>(rowSum + sum.At(j, i - 1));
            squares.At(j, i) = squares.At(j, i - 1) + rowSquares;
        }
    }
}

inline float StdDevAt(const Plane<float>& sum, const Plane<double>& squares, ImageRect rect, int32 x, int32 y) {
    const int32 a = rect.x + x;
    const int32 b = rect.y + y;
    const int32 w = rect.width;
    const int32 h = rect.height;
    const auto s = [&](int32 row, int32 column) { return static_cast<double>(sum.At(column, row)); };
    const auto q = [&](int32 row, int32 column) { return squares.At(column, row); };
    const double m = (s(b, a) - s(b, a + w) - s(b + h, a) + s(b + h, a + w)) / (w * h);
    double v = (q(b, a) - q(b, a + w) - q(b + h, a) + q(b + h, a + w)) / (w * h) - m * m;
    if (v < 0) v = 0;
    return static_cast<float>(std::sqrt(v));
}

} // namespace orvane::test::reference
