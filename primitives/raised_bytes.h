// Bytes that come of floats which are a little off: a value from 256 to 512, doubled as a number, has its byte in bits
// 16 to 23 and the fraction below. Whoever raises a value adds a half, to round it, and how far it may be off: then
// only of a value with a small fraction the byte is in doubt.
#pragma once

#include "primitives/byte_vectors.h"

namespace orvane::ORVANE_KERNELS {
namespace {

#if ORVANE_WIDE

/// What raises a value that is off by up to `Doubt` / 32768.
template <int32 Doubt>
constexpr float kRaiseBy = 256.5F + static_cast<float>(Doubt) / 32768;

inline __m256i DoubledNumbers(__m256 raised) {
    const __m256i numbers = _mm256_castps_si256(raised);
    return _mm256_add_epi32(numbers, numbers);
}

inline void StoreEight(__m256i doubled, uint8* to) {
    const __m256i third = TwiceTheSame(_mm_setr_epi8(2, 6, 10, 14, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1));
    const __m256i bytes = _mm256_shuffle_epi8(doubled, third);
    const __m256i inOrder = _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 4, 0, 4, 0, 4, 0, 4));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm256_castsi256_si128(inOrder));
}

/// A bit for each byte in doubt; of the smallest words of several vectors, one where there is any.
template <int32 Doubt>
inline uint32 DoubtsOf(__m256i doubled) {
    const __m256i certain = _mm256_and_si256(doubled, _mm256_set1_epi32(0xFFFF & ~(4 * Doubt - 1)));
    const __m256i doubts = _mm256_cmpeq_epi32(certain, _mm256_setzero_si256());
    return static_cast<uint32>(_mm256_movemask_ps(_mm256_castsi256_ps(doubts)));
}

#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
