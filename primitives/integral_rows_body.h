// The text of the kernels of integral images.
#pragma once

#include "primitives/double_vectors.h"
#include "primitives/row_kernels.h"
#include "primitives/running_sums.h"

namespace orvane::ORVANE_KERNELS {
namespace {

#if ORVANE_WIDE

inline __m256d LastDouble(__m256i v) {
    return _mm256_cvtepi32_pd(_mm_shuffle_epi32(_mm256_extracti128_si256(v, 1), 0xFF));
}

/// The whole numbers of a row's sums are exact in doubles, in whatever order they are added up.
void RunIntegral(const uint8* pixels, int32 width, const IntegralRows& rows) {
    const IntegralRows r = rows;
    __m256d before = _mm256_setzero_pd(), squaresBefore = before;
    int32 x = 0;
    for (; width - x >= 8; x += 8) {
        const Vector p = PixelNumbers(pixels + x);
        const Vector sums = RunningSums(p), squares = RunningSums(_mm256_madd_epi16(p, p));
        const __m256d low = _mm256_add_pd(before, LowDoubles(sums)), high = _mm256_add_pd(before, HighDoubles(sums));
        const __m256d lowSquares = _mm256_add_pd(squaresBefore, LowDoubles(squares));
        const __m256d highSquares = _mm256_add_pd(squaresBefore, HighDoubles(squares));
        before = _mm256_add_pd(before, LastDouble(sums));
        squaresBefore = _mm256_add_pd(squaresBefore, LastDouble(squares));
        _mm_storeu_ps(r.sum + x, _mm256_cvtpd_ps(_mm256_add_pd(low, _mm256_cvtps_pd(_mm_loadu_ps(r.sumAbove + x)))));
        _mm_storeu_ps(r.sum + x + 4,
                      _mm256_cvtpd_ps(_mm256_add_pd(high, _mm256_cvtps_pd(_mm_loadu_ps(r.sumAbove + x + 4)))));
        _mm256_storeu_pd(r.squares + x, _mm256_add_pd(_mm256_loadu_pd(r.squaresAbove + x), lowSquares));
        _mm256_storeu_pd(r.squares + x + 4, _mm256_add_pd(_mm256_loadu_pd(r.squaresAbove + x + 4), highSquares));
    }
    double rowSum = _mm256_cvtsd_f64(before), rowSquares = _mm256_cvtsd_f64(squaresBefore);
#else

void RunIntegral(const uint8* pixels, int32 width, const IntegralRows& rows) {
    const IntegralRows r = rows;
    int32 x = 0;
    int64 rowSum = 0, rowSquares = 0;
#endif
    for (; x < width; ++x) {
        const int32 p = pixels[x];
        rowSum += p;
        rowSquares += p * p;
        r.sum[x] = static_cast<float>(static_cast<double>(rowSum) + static_cast<double>(r.sumAbove[x]));
        r.squares[x] = r.squaresAbove[x] + static_cast<double>(rowSquares);
    }
}

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

void RunWholeIntegral(const uint8* pixels, int32 width, const IntegralRows& rows) {
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
