// Vectors of bytes for the kernels' texts, which a file of one instruction set includes: 16 or, with ORVANE_WIDE, 32
// of them. Everything is local to such a file: a function that the linker may share between files could run on a
// processor that lacks its instructions.
#pragma once

#include "primitives/types.h"

#include <immintrin.h>

namespace orvane::ORVANE_KERNELS {
namespace {

#if ORVANE_WIDE

constexpr int64 kBytes = 32;
using Vector = __m256i;

inline Vector LoadBytes(const void* from) { return _mm256_loadu_si256(static_cast<const __m256i*>(from)); }
inline void StoreBytes(void* to, Vector v) { _mm256_storeu_si256(static_cast<__m256i*>(to), v); }
inline Vector Zero() { return _mm256_setzero_si256(); }
inline Vector Splat(uint8 v) { return _mm256_set1_epi8(static_cast<char>(v)); }
inline Vector Smallest(Vector a, Vector b) { return _mm256_min_epu8(a, b); }
inline Vector Largest(Vector a, Vector b) { return _mm256_max_epu8(a, b); }
inline Vector Equal(Vector a, Vector b) { return _mm256_cmpeq_epi8(a, b); }
inline uint32 SetBits(Vector mask) { return static_cast<uint32>(_mm256_movemask_epi8(mask)); }
/// Of bytes with signs.
inline Vector IsMore(Vector a, Vector b) { return _mm256_cmpgt_epi8(a, b); }
/// Sums of bytes, in words at the beginnings of eight.
inline Vector SumOfEight(Vector v) { return _mm256_sad_epu8(v, Zero()); }
inline Vector OtherSign(Vector v) { return _mm256_xor_si256(v, _mm256_set1_epi8(-128)); }
inline Vector Both(Vector a, Vector b) { return _mm256_and_si256(a, b); }
inline Vector Either(Vector a, Vector b) { return _mm256_or_si256(a, b); }
inline Vector ButNot(Vector a, Vector b) { return _mm256_andnot_si256(b, a); }
inline Vector Less(Vector a, Vector b) { return _mm256_sub_epi8(a, b); }
inline Vector LessAtLeastZero(Vector a, Vector b) { return _mm256_subs_epu8(a, b); }
/// `a` where the mask is set, else `b`.
inline Vector Choose(Vector mask, Vector a, Vector b) { return _mm256_blendv_epi8(b, a, mask); }

// Words and numbers of 32 bits: lower and upper parts of each half of a vector, which the packing puts back.
inline Vector LowWords(Vector v) { return _mm256_unpacklo_epi8(v, Zero()); }
inline Vector HighWords(Vector v) { return _mm256_unpackhi_epi8(v, Zero()); }
inline Vector WordsOf(const uint8* bytes) {
    return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
}
inline Vector LowNumbers(Vector v) { return _mm256_unpacklo_epi16(v, Zero()); }
inline Vector HighNumbers(Vector v) { return _mm256_unpackhi_epi16(v, Zero()); }
inline Vector PackWords(Vector low, Vector high) { return _mm256_packus_epi16(low, high); }
inline Vector PackNumbers(Vector low, Vector high) { return _mm256_packs_epi32(low, high); }
inline Vector AddWords(Vector a, Vector b) { return _mm256_add_epi16(a, b); }
inline Vector SubtractWords(Vector a, Vector b) { return _mm256_sub_epi16(a, b); }
inline Vector LowPairs(Vector a, Vector b) { return _mm256_unpacklo_epi16(a, b); }
inline Vector HighPairs(Vector a, Vector b) { return _mm256_unpackhi_epi16(a, b); }
inline Vector SumsOfProducts(Vector a, Vector b) { return _mm256_madd_epi16(a, b); }
inline Vector NegativeWords(Vector v) { return _mm256_srai_epi16(v, 15); }
inline Vector ProductOfWords(Vector a, Vector b) { return _mm256_mullo_epi16(a, b); }
inline Vector UpperProductOfWords(Vector a, Vector b) { return _mm256_mulhi_epu16(a, b); }
inline Vector SplatWord(int32 v) { return _mm256_set1_epi16(static_cast<int16>(v)); }
/// Words of bytes times 256.
inline Vector LowUpperBytes(Vector v) { return _mm256_unpacklo_epi8(Zero(), v); }
inline Vector HighUpperBytes(Vector v) { return _mm256_unpackhi_epi8(Zero(), v); }
inline Vector UpperBytes(Vector words) { return _mm256_srli_epi16(words, 8); }
template <int32 Bits>
inline Vector ShiftWords(Vector v) {
    return _mm256_slli_epi16(v, Bits);
}

using Floats = __m256;
inline Floats SplatFloat(float v) { return _mm256_set1_ps(v); }
inline Floats FloatsOf(Vector numbers) { return _mm256_cvtepi32_ps(numbers); }
inline Vector Truncated(Floats v) { return _mm256_cvttps_epi32(v); }
inline Floats Sum(Floats a, Floats b) { return _mm256_add_ps(a, b); }
inline Floats Difference(Floats a, Floats b) { return _mm256_sub_ps(a, b); }
inline Floats Product(Floats a, Floats b) { return _mm256_mul_ps(a, b); }
inline Floats LargestFloat(Floats a, Floats b) { return _mm256_max_ps(a, b); }
inline Floats SmallestFloat(Floats a, Floats b) { return _mm256_min_ps(a, b); }
inline Floats RoughInverse(Floats v) { return _mm256_rcp_ps(v); }
inline Floats LoadFloats(const uint8* from) { return _mm256_loadu_ps(reinterpret_cast<const float*>(from)); }
inline Vector IsAbove(Floats a, Floats b) { return _mm256_castps_si256(_mm256_cmp_ps(a, b, _CMP_GT_OQ)); }
inline Vector IsEqual(Floats a, Floats b) { return _mm256_castps_si256(_mm256_cmp_ps(a, b, _CMP_EQ_OQ)); }
inline Vector AddNumbers(Vector a, Vector b) { return _mm256_add_epi32(a, b); }
inline Vector SubtractNumbers(Vector a, Vector b) { return _mm256_sub_epi32(a, b); }
/// All ones where the lowest bit is set.
inline Vector OddNumbers(Vector v) { return _mm256_srai_epi32(_mm256_slli_epi32(v, 31), 31); }
/// From the order in which packing leaves the groups of four bytes of four vectors to that of the vectors.
inline Vector InOrder(Vector v) { return _mm256_permutevar8x32_epi32(v, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7)); }

struct ThreeVectors {
    Vector a, b, c;
};

inline Vector LoadHalves(const uint8* low, const uint8* high) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(low))),
                                   _mm_loadu_si128(reinterpret_cast<const __m128i*>(high)), 1);
}

inline void StoreHalves(uint8* low, uint8* high, Vector v) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(low), _mm256_castsi256_si128(v));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(high), _mm256_extracti128_si256(v, 1));
}

inline Vector TwiceTheSame(__m128i v) { return _mm256_broadcastsi128_si256(v); }

/// Masks of every third byte of a half, from byte `First` on.
template <int32 First>
inline Vector EveryThird() {
    constexpr auto at = [](int32 i) { return static_cast<char>(i % 3 == First ? -1 : 0); };
    return TwiceTheSame(_mm_setr_epi8(at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8), at(9), at(10),
                                      at(11), at(12), at(13), at(14), at(15)));
}

/// In a half of a vector, where byte i of channel c stands among the bytes of all its pixels, modulo 16; and which
/// pixel's byte of channel c stands at place i of those.
template <int32 Channel>
inline Vector PlacesOfPixels() {
    constexpr auto at = [](int32 i) { return static_cast<char>((3 * i + Channel) % 16); };
    return TwiceTheSame(_mm_setr_epi8(at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8), at(9), at(10),
                                      at(11), at(12), at(13), at(14), at(15)));
}
template <int32 Channel>
inline Vector PixelsOfPlaces() { // 11 is the inverse of 3 modulo 16
    constexpr auto at = [](int32 i) { return static_cast<char>((i - Channel + 16) * 11 % 16); };
    return TwiceTheSame(_mm_setr_epi8(at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7), at(8), at(9), at(10),
                                      at(11), at(12), at(13), at(14), at(15)));
}

/// The channels of kBytes pixels. Modulo 16 the bytes of a channel have different places in its three vectors.
inline ThreeVectors Channels(const uint8* p) {
    const Vector a = LoadHalves(p, p + 48), b = LoadHalves(p + 16, p + 64), c = LoadHalves(p + 32, p + 80);
    const auto gather = [](Vector first, Vector second, Vector third, Vector places) {
        return _mm256_shuffle_epi8(Choose(EveryThird<0>(), first, Choose(EveryThird<1>(), second, third)), places);
    };
    // Place 16 k + i of the three holds channel (k + i) % 3.
    return {gather(a, c, b, PlacesOfPixels<0>()), gather(b, a, c, PlacesOfPixels<1>()),
            gather(c, b, a, PlacesOfPixels<2>())};
}

inline void StorePixels(const ThreeVectors& channels, uint8* to) {
    const Vector x = _mm256_shuffle_epi8(channels.a, PixelsOfPlaces<0>());
    const Vector y = _mm256_shuffle_epi8(channels.b, PixelsOfPlaces<1>());
    const Vector z = _mm256_shuffle_epi8(channels.c, PixelsOfPlaces<2>());
    const auto third = [](Vector first, Vector second, Vector last) {
        return Choose(EveryThird<0>(), first, Choose(EveryThird<1>(), second, last));
    };
    StoreHalves(to, to + 48, third(x, y, z));
    StoreHalves(to + 16, to + 64, third(y, z, x));
    StoreHalves(to + 32, to + 80, third(z, x, y));
}

#else

constexpr int64 kBytes = 16;
using Vector = __m128i;

inline Vector LoadBytes(const void* from) { return _mm_loadu_si128(static_cast<const __m128i*>(from)); }
inline void StoreBytes(void* to, Vector v) { _mm_storeu_si128(static_cast<__m128i*>(to), v); }
inline Vector Zero() { return _mm_setzero_si128(); }
inline Vector Splat(uint8 v) { return _mm_set1_epi8(static_cast<char>(v)); }
inline Vector Smallest(Vector a, Vector b) { return _mm_min_epu8(a, b); }
inline Vector Largest(Vector a, Vector b) { return _mm_max_epu8(a, b); }
inline Vector Equal(Vector a, Vector b) { return _mm_cmpeq_epi8(a, b); }
inline uint32 SetBits(Vector mask) { return static_cast<uint32>(_mm_movemask_epi8(mask)); }
/// Of bytes with signs.
inline Vector IsMore(Vector a, Vector b) { return _mm_cmpgt_epi8(a, b); }
/// Sums of bytes, in words at the beginnings of eight.
inline Vector SumOfEight(Vector v) { return _mm_sad_epu8(v, Zero()); }
inline Vector OtherSign(Vector v) { return _mm_xor_si128(v, _mm_set1_epi8(-128)); }
inline Vector Both(Vector a, Vector b) { return _mm_and_si128(a, b); }
inline Vector Either(Vector a, Vector b) { return _mm_or_si128(a, b); }
inline Vector ButNot(Vector a, Vector b) { return _mm_andnot_si128(b, a); }
inline Vector Less(Vector a, Vector b) { return _mm_sub_epi8(a, b); }
inline Vector LessAtLeastZero(Vector a, Vector b) { return _mm_subs_epu8(a, b); }
/// `a` where the mask is set, else `b`.
inline Vector Choose(Vector mask, Vector a, Vector b) { return Either(Both(a, mask), ButNot(b, mask)); }

inline Vector LowWords(Vector v) { return _mm_unpacklo_epi8(v, Zero()); }
inline Vector HighWords(Vector v) { return _mm_unpackhi_epi8(v, Zero()); }
inline Vector WordsOf(const uint8* bytes) { return LowWords(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes))); }
inline Vector LowNumbers(Vector v) { return _mm_unpacklo_epi16(v, Zero()); }
inline Vector HighNumbers(Vector v) { return _mm_unpackhi_epi16(v, Zero()); }
inline Vector PackWords(Vector low, Vector high) { return _mm_packus_epi16(low, high); }
inline Vector PackNumbers(Vector low, Vector high) { return _mm_packs_epi32(low, high); }
inline Vector AddWords(Vector a, Vector b) { return _mm_add_epi16(a, b); }
inline Vector SubtractWords(Vector a, Vector b) { return _mm_sub_epi16(a, b); }
inline Vector LowPairs(Vector a, Vector b) { return _mm_unpacklo_epi16(a, b); }
inline Vector HighPairs(Vector a, Vector b) { return _mm_unpackhi_epi16(a, b); }
inline Vector SumsOfProducts(Vector a, Vector b) { return _mm_madd_epi16(a, b); }
inline Vector NegativeWords(Vector v) { return _mm_srai_epi16(v, 15); }
inline Vector ProductOfWords(Vector a, Vector b) { return _mm_mullo_epi16(a, b); }
inline Vector UpperProductOfWords(Vector a, Vector b) { return _mm_mulhi_epu16(a, b); }
inline Vector SplatWord(int32 v) { return _mm_set1_epi16(static_cast<int16>(v)); }
/// Words of bytes times 256.
inline Vector LowUpperBytes(Vector v) { return _mm_unpacklo_epi8(Zero(), v); }
inline Vector HighUpperBytes(Vector v) { return _mm_unpackhi_epi8(Zero(), v); }
inline Vector UpperBytes(Vector words) { return _mm_srli_epi16(words, 8); }
template <int32 Bits>
inline Vector ShiftWords(Vector v) {
    return _mm_slli_epi16(v, Bits);
}

using Floats = __m128;
inline Floats SplatFloat(float v) { return _mm_set1_ps(v); }
inline Floats FloatsOf(Vector numbers) { return _mm_cvtepi32_ps(numbers); }
inline Vector Truncated(Floats v) { return _mm_cvttps_epi32(v); }
inline Floats Sum(Floats a, Floats b) { return _mm_add_ps(a, b); }
inline Floats Difference(Floats a, Floats b) { return _mm_sub_ps(a, b); }
inline Floats Product(Floats a, Floats b) { return _mm_mul_ps(a, b); }
inline Floats LargestFloat(Floats a, Floats b) { return _mm_max_ps(a, b); }
inline Floats SmallestFloat(Floats a, Floats b) { return _mm_min_ps(a, b); }
inline Floats RoughInverse(Floats v) { return _mm_rcp_ps(v); }
inline Floats LoadFloats(const uint8* from) { return _mm_loadu_ps(reinterpret_cast<const float*>(from)); }
inline Vector IsAbove(Floats a, Floats b) { return _mm_castps_si128(_mm_cmpgt_ps(a, b)); }
inline Vector IsEqual(Floats a, Floats b) { return _mm_castps_si128(_mm_cmpeq_ps(a, b)); }
inline Vector AddNumbers(Vector a, Vector b) { return _mm_add_epi32(a, b); }
inline Vector SubtractNumbers(Vector a, Vector b) { return _mm_sub_epi32(a, b); }
/// All ones where the lowest bit is set.
inline Vector OddNumbers(Vector v) { return _mm_srai_epi32(_mm_slli_epi32(v, 31), 31); }
inline Vector InOrder(Vector v) { return v; }

struct ThreeVectors {
    Vector a, b, c;
};

/// Takes 48 bytes apart and puts their halves together again, byte by byte in turn: byte p goes to 2 p modulo 47.
inline ThreeVectors Riffle(const ThreeVectors& v) {
    return {_mm_unpacklo_epi8(v.a, _mm_srli_si128(v.b, 8)), _mm_unpacklo_epi8(_mm_srli_si128(v.a, 8), v.c),
            _mm_unpacklo_epi8(v.b, _mm_srli_si128(v.c, 8))};
}

/// The way back: the bytes of even places, then those of odd ones.
inline ThreeVectors Unriffle(const ThreeVectors& v) {
    const Vector low = _mm_set1_epi16(255);
    return {PackWords(Both(v.a, low), Both(v.b, low)), PackWords(Both(v.c, low), _mm_srli_epi16(v.a, 8)),
            PackWords(_mm_srli_epi16(v.b, 8), _mm_srli_epi16(v.c, 8))};
}

/// The channels of kBytes pixels. Four riffles take byte p to 16 p modulo 47, that is channel c of pixel i, which is
/// byte 3 i + c, to 16 c + i.
inline ThreeVectors Channels(const uint8* p) {
    return Riffle(Riffle(Riffle(Riffle({LoadBytes(p), LoadBytes(p + 16), LoadBytes(p + 32)}))));
}

inline void StorePixels(const ThreeVectors& channels, uint8* to) {
    const ThreeVectors pixels = Unriffle(Unriffle(Unriffle(Unriffle(channels))));
    StoreBytes(to, pixels.a);
    StoreBytes(to + 16, pixels.b);
    StoreBytes(to + 32, pixels.c);
}

#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
