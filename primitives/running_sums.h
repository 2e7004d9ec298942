// Running sums inside vectors, for the kernels' texts.
#pragma once

#include "primitives/byte_vectors.h"

namespace orvane::ORVANE_KERNELS {
namespace {

/// As many pixels as a vector has 32-bit numbers, as those.
inline Vector PixelNumbers(const uint8* pixels) {
#if ORVANE_WIDE
    return _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixels)));
#else
    int32 four;
    __builtin_memcpy(&four, pixels, 4);
    return _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(four), Zero()), Zero());
#endif
}

/// Running sums of a vector's 32-bit numbers, by shifts and additions.
inline Vector RunningSums(Vector v) {
#if ORVANE_WIDE
    // Shifts stay within the halves; the lower one's total goes to the upper one.
    v = _mm256_add_epi32(v, _mm256_slli_si256(v, 4));
    v = _mm256_add_epi32(v, _mm256_slli_si256(v, 8));
    return _mm256_add_epi32(v, _mm256_shuffle_epi32(_mm256_permute2x128_si256(v, v, 0x08), 0xFF));
#else
    v = _mm_add_epi32(v, _mm_slli_si128(v, 4));
    return _mm_add_epi32(v, _mm_slli_si128(v, 8));
#endif
}

/// Running sums of whole numbers, a vector at a time.
class Prefix {
public:
    Vector Next(Vector values) {
        const Vector within = RunningSums(values);
        const Vector sums = AddNumbers(within, before_);
        before_ = AddNumbers(before_, Last(within));
        return sums;
    }

    /// The sum of all so far, in each place.
    Vector All() const { return before_; }

private:
    /// The last number, in each place.
    static Vector Last(Vector v) {
#if ORVANE_WIDE
        return _mm256_permutevar8x32_epi32(v, _mm256_set1_epi32(7));
#else
        return _mm_shuffle_epi32(v, 0xFF);
#endif
    }

    Vector before_ = Zero();
};

/// Of numbers whose upper halves are 0.
inline Vector Squares(Vector v) {
#if ORVANE_WIDE
    return _mm256_madd_epi16(v, v);
#else
    return _mm_madd_epi16(v, v);
#endif
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
