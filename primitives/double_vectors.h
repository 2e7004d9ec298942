// Vectors of doubles from those of 32-bit numbers, for the kernels' texts.
#pragma once

#include "primitives/byte_vectors.h"

namespace orvane::ORVANE_KERNELS {
namespace {

constexpr int64 kDoubles = kBytes / 8;

#if ORVANE_WIDE
using Doubles = __m256d;
inline Doubles SplatDouble(double v) { return _mm256_set1_pd(v); }
inline Doubles LowDoubles(Floats v) { return _mm256_cvtps_pd(_mm256_castps256_ps128(v)); }
inline Doubles HighDoubles(Floats v) { return _mm256_cvtps_pd(_mm256_extractf128_ps(v, 1)); }
inline Doubles LowDoubles(Vector numbers) { return _mm256_cvtepi32_pd(_mm256_castsi256_si128(numbers)); }
inline Doubles HighDoubles(Vector numbers) { return _mm256_cvtepi32_pd(_mm256_extracti128_si256(numbers, 1)); }
inline Floats FloatsOf(Doubles low, Doubles high) {
    return _mm256_set_m128(_mm256_cvtpd_ps(high), _mm256_cvtpd_ps(low));
}
/// 0 in place of what is less, or no number.
inline Doubles AtLeastZero(Doubles v) { return _mm256_max_pd(v, _mm256_setzero_pd()); }
#else
using Doubles = __m128d;
inline Doubles SplatDouble(double v) { return _mm_set1_pd(v); }
inline Doubles LowDoubles(Floats v) { return _mm_cvtps_pd(v); }
inline Doubles HighDoubles(Floats v) { return _mm_cvtps_pd(_mm_movehl_ps(v, v)); }
inline Doubles LowDoubles(Vector numbers) { return _mm_cvtepi32_pd(numbers); }
inline Doubles HighDoubles(Vector numbers) { return _mm_cvtepi32_pd(_mm_shuffle_epi32(numbers, 0xEE)); }
inline Floats FloatsOf(Doubles low, Doubles high) { return _mm_movelh_ps(_mm_cvtpd_ps(low), _mm_cvtpd_ps(high)); }
/// 0 in place of what is less, or no number.
inline Doubles AtLeastZero(Doubles v) { return _mm_max_pd(v, _mm_setzero_pd()); }
#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
