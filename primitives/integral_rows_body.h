// The text of the kernels of integral images.
#pragma once

#include "primitives/double_vectors.h"
#include "primitives/row_kernels.h"
#include "primitives/running_sums.h"

namespace orvane::ORVANE_KERNELS {
namespace {

#if ORVANE_WIDE
inline Floats SumOf(Floats a, const float* b) { return _mm256_add_ps(a, _mm256_loadu_ps(b)); }
inline Doubles SumOf(Doubles a, const double* b) { return _mm256_add_pd(a, _mm256_loadu_pd(b)); }
inline void StoreAll(float* to, Floats v) { _mm256_storeu_ps(to, v); }
inline void StoreAll(double* to, Doubles v) { _mm256_storeu_pd(to, v); }
inline int32 FirstNumber(Vector v) { return _mm_cvtsi128_si32(_mm256_castsi256_si128(v)); }
#else
inline Floats SumOf(Floats a, const float* b) { return _mm_add_ps(a, _mm_loadu_ps(b)); }
inline Doubles SumOf(Doubles a, const double* b) { return _mm_add_pd(a, _mm_loadu_pd(b)); }
inline void StoreAll(float* to, Floats v) { _mm_storeu_ps(to, v); }
inline void StoreAll(double* to, Doubles v) { _mm_storeu_pd(to, v); }
inline int32 FirstNumber(Vector v) { return _mm_cvtsi128_si32(v); }
#endif

/// A row's sum is a whole number that a float holds. The sum of two floats, rounded to a double on its way, is the same
/// float as without: a double has more than twice the digits.
void RunIntegral(const uint8* pixels, int32 width, const IntegralRows& rows) {
    const IntegralRows r = rows;
    Prefix sums, squareSums;
    int32 x = 0;
    for (; width - x >= 2 * kDoubles; x += 2 * kDoubles) {
        const Vector p = PixelNumbers(pixels + x);
        const Vector squares = squareSums.Next(Squares(p));
        StoreAll(r.sum + x, SumOf(FloatsOf(sums.Next(p)), r.sumAbove + x));
        StoreAll(r.squares + x, SumOf(LowDoubles(squares), r.squaresAbove + x));
        StoreAll(r.squares + x + kDoubles, SumOf(HighDoubles(squares), r.squaresAbove + x + kDoubles));
    }
    int32 rowSum = FirstNumber(sums.All()), rowSquares = FirstNumber(squareSums.All());
    for (; x < width; ++x) {
        const int32 p = pixels[x];
        rowSum += p;
        rowSquares += p * p;
        r.sum[x] = static_cast<float>(rowSum) + r.sumAbove[x];
        r.squares[x] = r.squaresAbove[x] + static_cast<double>(rowSquares);
    }
}

/// The corners of a sum over a rectangle.
template <typename T>
struct Corners {
    const T* topLeft;
    const T* topRight;
    const T* bottomLeft;
    const T* bottomRight;
};

// Of 0 and what is no number the largest is the second, as with std::max(v, 0.0).
#if ORVANE_WIDE
inline Doubles DoublesAt(const float* from) { return _mm256_cvtps_pd(_mm_loadu_ps(from)); }
inline Doubles DoublesAt(const double* from) { return _mm256_loadu_pd(from); }
inline Doubles SquareRoots(Doubles v) { return _mm256_sqrt_pd(_mm256_max_pd(_mm256_setzero_pd(), v)); }
inline void StoreAsFloats(float* to, Doubles v) { _mm_storeu_ps(to, _mm256_cvtpd_ps(v)); }
#else
inline Doubles DoublesAt(const float* from) { return _mm_setr_pd(from[0], from[1]); }
inline Doubles DoublesAt(const double* from) { return _mm_loadu_pd(from); }
inline Doubles SquareRoots(Doubles v) { return _mm_sqrt_pd(_mm_max_pd(_mm_setzero_pd(), v)); }
inline void StoreAsFloats(float* to, Doubles v) { _mm_storel_pi(reinterpret_cast<__m64*>(to), _mm_cvtpd_ps(v)); }
#endif

template <typename T>
inline Doubles SumsAt(const Corners<T>& c, int32 x) {
    return DoublesAt(c.topLeft + x) - DoublesAt(c.topRight + x) - DoublesAt(c.bottomLeft + x) +
           DoublesAt(c.bottomRight + x);
}

void RunStdDevs(const RectRows& rows, int32 width, float* to) {
    const Corners<float> sums = {rows.sumTop, rows.sumTop + rows.width, rows.sumBottom, rows.sumBottom + rows.width};
    const Corners<double> squares = {rows.squareTop, rows.squareTop + rows.width, rows.squareBottom,
                                     rows.squareBottom + rows.width};
    const Doubles area = SplatDouble(rows.area);
    int32 x = 0;
    for (; width - x >= kDoubles; x += kDoubles) {
        const Doubles mean = SumsAt(sums, x) / area;
        StoreAsFloats(to + x, SquareRoots(SumsAt(squares, x) / area - mean * mean));
    }
    for (; x < width; ++x) {
        const double mean =
            (static_cast<double>(sums.topLeft[x]) - sums.topRight[x] - sums.bottomLeft[x] + sums.bottomRight[x]) /
            rows.area;
        const double meanSquare =
            (squares.topLeft[x] - squares.topRight[x] - squares.bottomLeft[x] + squares.bottomRight[x]) / rows.area;
        const double spread = meanSquare - mean * mean;
        const __m128d one = _mm_set_sd(spread < 0.0 ? 0.0 : spread);
        to[x] = static_cast<float>(_mm_cvtsd_f64(_mm_sqrt_sd(one, one)));
    }
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
