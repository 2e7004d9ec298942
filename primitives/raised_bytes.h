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

// Likewise of values that lie beyond a byte as well, raised above 0 and below 1024, and by a bound that is not known
// before. Numbers go on in both directions then; and what is taken for a doubt out there is only decided in vain.

/// The bytes of two vectors as words, before packing brings them to a byte's ends.
inline __m256i RaisedWords(__m256i a, __m256i b) {
    const __m256i upper = _mm256_packs_epi32(_mm256_srai_epi32(a, 16), _mm256_srai_epi32(b, 16));
    return _mm256_sub_epi16(upper, _mm256_set1_epi16(static_cast<int16>(0x8700))); // the upper word of 256
}

inline __m256i SmallestWords(__m256i a, __m256i b) { return _mm256_min_epu16(a, b); }

inline uint32 DoubtsOf(__m256i doubled, int32 doubt) {
    const __m256i fractions = _mm256_and_si256(doubled, _mm256_set1_epi32(0xFFFF));
    const __m256i doubts = _mm256_cmpgt_epi32(_mm256_set1_epi32(4 * doubt), fractions);
    return static_cast<uint32>(_mm256_movemask_ps(_mm256_castsi256_ps(doubts)));
}

/// Of the smallest words of several vectors. Upper words are larger than any fraction in doubt.
inline bool AnyInDoubt(__m256i smallest, int32 doubt) {
    const __m256i doubts = _mm256_subs_epu16(_mm256_set1_epi16(static_cast<int16>(4 * doubt)), smallest);
    return _mm256_testz_si256(doubts, doubts) == 0;
}

#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
