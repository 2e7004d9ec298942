// The widest vectors of a file, for windows that stand side by side: 64 bytes with ORVANE_WIDEST, else as many as all
// others have.
#pragma once

#include "primitives/double_vectors.h"

namespace orvane::ORVANE_KERNELS {
namespace {

#if ORVANE_WIDEST
using WideVector = __m512i;
using WideFloats = __m512;
using WideDoubles = __m512d;
#else
using WideVector = Vector;
using WideFloats = Floats;
using WideDoubles = Doubles;
#endif
using WideInts = int32 __attribute__((vector_size(sizeof(WideVector))));
using WideUnsignedInts = uint32 __attribute__((vector_size(sizeof(WideVector))));

template <typename V, typename T>
inline V Load(const T* from) {
    V v;
    __builtin_memcpy(&v, from, sizeof v);
    return v;
}

template <typename V, typename T>
inline void Store(const V& v, T* to) {
    __builtin_memcpy(to, &v, sizeof v);
}

/// A number in all places: to take 0 away changes none.
template <typename V>
inline V Splat(float v) {
    return v - V{};
}

constexpr auto kWideNumbers = static_cast<int32>(sizeof(WideFloats) / sizeof(float));

/// Two vectors whose elements are those of both halves of words.
struct FloatPair {
    WideFloats low, high;
};

// What each width has: a * b + c, rounded once or twice, since the bounds allow for both; a sum, and more where a
// number has a sign; the smaller of a magnitude and that of a number; a sum, or no number where a magnitude is below 1;
// and a bit for each number that is at least, or below, a limit.
#if ORVANE_WIDEST

inline Floats MultiplyAdd(Floats a, Floats b, Floats c) { return _mm256_fmadd_ps(a, b, c); }
inline WideFloats MultiplyAdd(WideFloats a, WideFloats b, WideFloats c) { return _mm512_fmadd_ps(a, b, c); }
inline Floats AddBelow(Floats sum, Floats number, Floats more) {
    return _mm256_mask_add_ps(sum, _mm256_movepi32_mask(_mm256_castps_si256(number)), sum, more);
}
inline WideFloats AddBelow(WideFloats sum, WideFloats number, WideFloats more) {
    return _mm512_mask_add_ps(sum, _mm512_movepi32_mask(_mm512_castps_si512(number)), sum, more);
}
constexpr float kNoNumber = __builtin_nanf("");
constexpr int kSmallerMagnitude = 10; // without a sign
inline Floats Nearer(Floats magnitude, Floats number) { return _mm256_range_ps(magnitude, number, kSmallerMagnitude); }
inline WideFloats Nearer(WideFloats magnitude, WideFloats number) {
    return _mm512_range_ps(magnitude, number, kSmallerMagnitude);
}
inline Floats UnlessDoubtful(Floats sum, Floats nearest) {
    const __mmask8 near = _mm256_cmp_ps_mask(nearest, Splat<Floats>(1.0F), _CMP_LT_OQ);
    return _mm256_mask_mov_ps(sum, near, Splat<Floats>(kNoNumber));
}
inline WideFloats UnlessDoubtful(WideFloats sum, WideFloats nearest) {
    const __mmask16 near = _mm512_cmp_ps_mask(nearest, Splat<WideFloats>(1.0F), _CMP_LT_OQ);
    return _mm512_mask_mov_ps(sum, near, Splat<WideFloats>(kNoNumber));
}
inline uint32 BitsAtLeast(Floats v, float least) { return _mm256_cmp_ps_mask(v, Splat<Floats>(least), _CMP_GE_OQ); }
inline uint32 BitsAtLeast(WideFloats v, float least) {
    return _mm512_cmp_ps_mask(v, Splat<WideFloats>(least), _CMP_GE_OQ);
}
inline uint32 BitsBelow(Floats v, float limit) { return _mm256_cmp_ps_mask(v, Splat<Floats>(limit), _CMP_LT_OQ); }
inline uint32 BitsBelow(WideFloats v, float limit) {
    return _mm512_cmp_ps_mask(v, Splat<WideFloats>(limit), _CMP_LT_OQ);
}

inline WideVector SubtractWords(WideVector a, WideVector b) { return _mm512_sub_epi16(a, b); }
inline WideVector AddNumbers(WideVector a, WideVector b) { return _mm512_add_epi32(a, b); }
inline WideVector LowPairs(WideVector a, WideVector b) { return _mm512_unpacklo_epi16(a, b); }
inline WideVector HighPairs(WideVector a, WideVector b) { return _mm512_unpackhi_epi16(a, b); }
inline WideVector SumsOfProducts(WideVector a, WideVector b) { return _mm512_madd_epi16(a, b); }
inline WideFloats FloatsOf(WideVector numbers) { return _mm512_maskz_cvtepi32_ps(0xFFFF, numbers); }

/// From the order of memory to that of numbers made of words, which stays within 16 bytes, and back.
inline FloatPair Parted(const FloatPair& v) {
    return {__builtin_shufflevector(v.low, v.high, 0, 1, 2, 3, 8, 9, 10, 11, 16, 17, 18, 19, 24, 25, 26, 27),
            __builtin_shufflevector(v.low, v.high, 4, 5, 6, 7, 12, 13, 14, 15, 20, 21, 22, 23, 28, 29, 30, 31)};
}
inline FloatPair Ordered(const FloatPair& v) {
    return {__builtin_shufflevector(v.low, v.high, 0, 1, 2, 3, 16, 17, 18, 19, 4, 5, 6, 7, 20, 21, 22, 23),
            __builtin_shufflevector(v.low, v.high, 8, 9, 10, 11, 24, 25, 26, 27, 12, 13, 14, 15, 28, 29, 30, 31)};
}

// The forms with a mask, of all places, since the compiler takes those without one for uses of a vector that was never
// set.
inline WideDoubles LowDoubles(WideFloats v) {
    return _mm512_maskz_cvtps_pd(0xFF, __builtin_shufflevector(v, v, 0, 1, 2, 3, 4, 5, 6, 7));
}
inline WideDoubles HighDoubles(WideFloats v) {
    return _mm512_maskz_cvtps_pd(0xFF, __builtin_shufflevector(v, v, 8, 9, 10, 11, 12, 13, 14, 15));
}
inline WideDoubles LowDoubles(WideVector numbers) {
    return _mm512_maskz_cvtepi32_pd(0xFF, __builtin_shufflevector(numbers, numbers, 0, 1, 2, 3));
}
inline WideDoubles HighDoubles(WideVector numbers) {
    return _mm512_maskz_cvtepi32_pd(0xFF, __builtin_shufflevector(numbers, numbers, 4, 5, 6, 7));
}
inline WideFloats FloatsOf(WideDoubles low, WideDoubles high) {
    const Floats a = _mm512_maskz_cvtpd_ps(0xFF, low), b = _mm512_maskz_cvtpd_ps(0xFF, high);
    return __builtin_shufflevector(a, b, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
}
/// 0 in place of what is less, or no number.
inline WideDoubles AtLeastZero(WideDoubles v) { return _mm512_maskz_max_pd(0xFF, v, WideDoubles{}); }
inline WideFloats SquareRoots(WideFloats v) { return _mm512_maskz_sqrt_ps(0xFFFF, v); }

#else

#if ORVANE_WIDE
inline uint32 SignBits(Floats v) { return static_cast<uint32>(_mm256_movemask_ps(v)); }
inline Floats MultiplyAdd(Floats a, Floats b, Floats c) { return _mm256_fmadd_ps(a, b, c); }
inline Floats SquareRoots(Floats v) { return _mm256_sqrt_ps(v); }

/// From the order of memory to that of numbers made of words, and back.
inline FloatPair Parted(const FloatPair& v) {
    return {_mm256_permute2f128_ps(v.low, v.high, 0x20), _mm256_permute2f128_ps(v.low, v.high, 0x31)};
}
#else
inline uint32 SignBits(Floats v) { return static_cast<uint32>(_mm_movemask_ps(v)); }
inline Floats MultiplyAdd(Floats a, Floats b, Floats c) { return a * b + c; }
inline Floats SquareRoots(Floats v) { return _mm_sqrt_ps(v); }
inline FloatPair Parted(const FloatPair& v) { return v; }
#endif
inline FloatPair Ordered(const FloatPair& v) { return Parted(v); }

inline WideInts BitsOf(Floats v) { return reinterpret_cast<WideInts>(v); }
inline Floats NumbersOf(WideInts bits) { return reinterpret_cast<Floats>(bits); }

inline Floats AddBelow(Floats sum, Floats number, Floats more) {
    return sum + NumbersOf(BitsOf(number) >> 31 & BitsOf(more));
}
inline Floats Nearer(Floats magnitude, Floats number) {
    return SmallestFloat(NumbersOf(BitsOf(number) & 0x7FFFFFFF), magnitude);
}
inline Floats UnlessDoubtful(Floats sum, Floats nearest) {
    return NumbersOf(BitsOf(sum) | (nearest < 1.0F)); // all ones are no number
}
inline uint32 BitsAtLeast(Floats v, float least) { return SignBits(NumbersOf(v >= least)); }
inline uint32 BitsBelow(Floats v, float limit) { return SignBits(NumbersOf(v < limit)); }

#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
