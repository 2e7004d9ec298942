// The kernels' text, compiled once for each instruction set by the files that include it. Everything is local to such a
// file: a function that the linker may share between files could run on a processor that lacks its instructions.
// ORVANE_LANES says how many floats a vector has, ORVANE_KERNELS names the namespace, by which one tells the forms
// apart in a program.
#pragma once

#include "detect/scan_kernels.h"

#include <immintrin.h>

namespace orvane::ORVANE_KERNELS {
namespace {

constexpr int32 kLanes = ORVANE_LANES;

using Floats = float __attribute__((vector_size(kLanes * 4)));
using Ints = int32 __attribute__((vector_size(kLanes * 4)));
using UnsignedInts = uint32 __attribute__((vector_size(kLanes * 4)));
using HalfDoubles = double __attribute__((vector_size(kLanes * 4)));

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

inline Floats Splat(float value) { return value - Floats{}; }

/// A bit for each lane whose mask is set.
inline uint32 Bits(const Ints& mask) {
#if ORVANE_LANES == 4
    return static_cast<uint32>(_mm_movemask_ps(reinterpret_cast<__m128>(mask)));
#else
    return static_cast<uint32>(_mm256_movemask_ps(reinterpret_cast<__m256>(mask)));
#endif
}

inline Floats Smaller(const Floats& a, const Floats& b) {
#if ORVANE_LANES == 4
    return reinterpret_cast<Floats>(_mm_min_ps(reinterpret_cast<__m128>(a), reinterpret_cast<__m128>(b)));
#else
    return reinterpret_cast<Floats>(_mm256_min_ps(reinterpret_cast<__m256>(a), reinterpret_cast<__m256>(b)));
#endif
}

inline Floats SquareRoot(const Floats& v) {
#if ORVANE_LANES == 4
    return reinterpret_cast<Floats>(_mm_sqrt_ps(reinterpret_cast<__m128>(v)));
#else
    return reinterpret_cast<Floats>(_mm256_sqrt_ps(reinterpret_cast<__m256>(v)));
#endif
}

/// a * b + c, rounded once or twice: the bounds allow for both.
inline Floats MultiplyAdd(const Floats& a, const Floats& b, const Floats& c) {
#ifdef __FMA__
    return reinterpret_cast<Floats>(
        _mm256_fmadd_ps(reinterpret_cast<__m256>(a), reinterpret_cast<__m256>(b), reinterpret_cast<__m256>(c)));
#else
    return a * b + c;
#endif
}

inline Floats Magnitude(const Floats& v) {
    return reinterpret_cast<Floats>(reinterpret_cast<Ints>(v) & (Ints{} + 0x7FFFFFFF));
}

void RunSample(const uint8* from, const int32* columns, int32 width, uint8* row) {
    int32 x = 0;
    for (; x + 4 <= width; x += 4) {
        const uint8 four[4] = {from[columns[x]], from[columns[x + 1]], from[columns[x + 2]], from[columns[x + 3]]};
        __builtin_memcpy(row + x, four, 4);
    }
    for (; x < width; ++x) row[x] = from[columns[x]];
}

/// Some groups that share the reading of the stumps.
template <int32 Groups>
struct Running {
    const float* window[Groups];
    Floats norm[Groups];
    Floats sum[Groups];
    Floats nearest[Groups]; // the smallest difference that decided a stump
};

/// `Rects` rectangles a stump.
template <int32 Rects, int32 Groups>
inline void RunStumps(int32 count, const PlannedStump*& stump, const int32*& corners, const float*& weights,
                      Running<Groups>& r) {
    for (int32 i = 0; i < count; ++i, ++stump, corners += 4 * Rects, weights += Rects) {
        Floats difference[Groups];
        for (int32 g = 0; g < Groups; ++g) difference[g] = r.norm[g] * stump->minusThreshold;
        for (int32 rect = 0; rect < Rects; ++rect) {
            const int32* c = corners + 4 * rect;
            const std::ptrdiff_t a = c[0], b = c[1], d = c[2], e = c[3];
            for (int32 g = 0; g < Groups; ++g) {
                const float* w = r.window[g];
                const Floats sum =
                    (Load<Floats>(w + a) - Load<Floats>(w + b)) - (Load<Floats>(w + d) - Load<Floats>(w + e));
                difference[g] = MultiplyAdd(sum, Splat(weights[rect]), difference[g]);
            }
        }
        const Floats below = Splat(stump->below), above = Splat(stump->above);
        for (int32 g = 0; g < Groups; ++g) {
            r.sum[g] += difference[g] < 0.0F ? below : above;
            r.nearest[g] = Smaller(Magnitude(difference[g]), r.nearest[g]);
        }
    }
}

template <int32 Groups>
inline void RunGroups(const ResolvedStage& stage, const float* window, const float* norms, float* sums,
                      const int32* starts, GroupVerdict* verdicts) {
    Running<Groups> r;
    for (int32 g = 0; g < Groups; ++g) {
        r.window[g] = window + starts[g];
        r.norm[g] = Load<Floats>(norms + starts[g]);
        r.sum[g] = Floats{};
        r.nearest[g] = Splat(3e38F);
    }
    const PlannedStump* stump = stage.stumps;
    const int32* corners = stage.corners;
    const float* weights = stage.weights;
    RunStumps<1>(stage.stumpCounts[0], stump, corners, weights, r);
    RunStumps<2>(stage.stumpCounts[1], stump, corners, weights, r);
    RunStumps<3>(stage.stumpCounts[2], stump, corners, weights, r);
    RunStumps<4>(stage.stumpCounts[3], stump, corners, weights, r);
    for (int32 g = 0; g < Groups; ++g) {
        if (stage.continues) r.sum[g] += Load<Floats>(sums + starts[g]);
        Store(r.sum[g], sums + starts[g]);
        const uint32 passes = Bits(r.sum[g] >= stage.passesFrom);
        const uint32 fails = Bits(r.sum[g] < stage.failsBelow);
        verdicts[g] = {passes, ~(passes | fails), Bits(r.nearest[g] < 1.0F)};
    }
}

void RunStage(const ResolvedStage& stage, const float* window, const float* norms, float* sums, const int32* starts,
              int32 count, GroupVerdict* verdicts) {
    int32 i = 0;
    for (; i + 2 <= count; i += 2) RunGroups<2>(stage, window, norms, sums, starts + i, verdicts + i);
    if (i < count) RunGroups<1>(stage, window, norms, sums, starts + i, verdicts + i);
}

using HalfFloats = float __attribute__((vector_size(kLanes * 2)));
using HalfInts = int32 __attribute__((vector_size(kLanes * 2)));

/// The area times the sum of squares less the square of the sum, which is exact in double; 0 where the rounding of
/// large sums made it less.
inline HalfFloats SpreadOf(const HalfFloats& sum, const HalfInts& squares, double area) {
    const auto wideSum = __builtin_convertvector(sum, HalfDoubles);
    const auto spread = __builtin_convertvector(squares, HalfDoubles) * area - wideSum * wideSum;
    return __builtin_convertvector(spread > 0.0 ? spread : HalfDoubles{}, HalfFloats);
}

void RunNorms(const InnerRectRows& rows, const int32* starts, int32 count, float* norms) {
    const float inverse = 1.0F / rows.area;
    const double area = rows.area;
    for (int32 i = 0; i < count; ++i) {
        const std::ptrdiff_t left = starts[i], right = left + rows.width;
        const Floats sum = (Load<Floats>(rows.sumTop + left) - Load<Floats>(rows.sumTop + right)) -
                           (Load<Floats>(rows.sumBottom + left) - Load<Floats>(rows.sumBottom + right));
        // Modulo 2^32 on the way; what a window has is less.
        const auto at = [](const uint32* from) { return Load<UnsignedInts>(from); };
        const UnsignedInts squares = (at(rows.squaresTop + left) - at(rows.squaresTop + right)) -
                                     (at(rows.squaresBottom + left) - at(rows.squaresBottom + right));
        HalfFloats sums[2], spreads[2];
        HalfInts halves[2];
        __builtin_memcpy(sums, &sum, sizeof sum);
        __builtin_memcpy(halves, &squares, sizeof squares);
        for (int32 half = 0; half < 2; ++half) spreads[half] = SpreadOf(sums[half], halves[half], area);
        Floats spread;
        __builtin_memcpy(&spread, spreads, sizeof spread);
        Store(SquareRoot(spread) * inverse, norms + left);
    }
}

/// Running sums of whole numbers, a vector at a time: within it by shifts and additions, and what came before.
struct Prefix {
    Ints before{};

    Ints Next(Ints values) {
#if ORVANE_LANES == 4
        auto v = reinterpret_cast<__m128i>(values);
        v = _mm_add_epi32(v, _mm_slli_si128(v, 4));
        v = _mm_add_epi32(v, _mm_slli_si128(v, 8));
        v = _mm_add_epi32(v, reinterpret_cast<__m128i>(before));
        before = reinterpret_cast<Ints>(_mm_shuffle_epi32(v, 0xFF));
#else
        // Shifts stay within the halves; the lower one's total goes to the upper one.
        auto v = reinterpret_cast<__m256i>(values);
        v = _mm256_add_epi32(v, _mm256_slli_si256(v, 4));
        v = _mm256_add_epi32(v, _mm256_slli_si256(v, 8));
        const __m256i lower = _mm256_permute2x128_si256(v, v, 0x08);
        v = _mm256_add_epi32(v, _mm256_shuffle_epi32(lower, 0xFF));
        const __m256i total = _mm256_permutevar8x32_epi32(v, _mm256_set1_epi32(7));
        v = _mm256_add_epi32(v, reinterpret_cast<__m256i>(before));
        before = reinterpret_cast<Ints>(_mm256_add_epi32(total, reinterpret_cast<__m256i>(before)));
#endif
        return reinterpret_cast<Ints>(v);
    }
};

/// Pixels as whole numbers.
inline Ints LoadPixels(const uint8* pixels) {
#if ORVANE_LANES == 4
    int32 four;
    __builtin_memcpy(&four, pixels, 4);
    const __m128i zero = _mm_setzero_si128();
    return reinterpret_cast<Ints>(_mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(four), zero), zero));
#else
    return reinterpret_cast<Ints>(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixels))));
#endif
}

/// Of numbers whose upper halves are 0.
inline Ints Squares(const Ints& v) {
#if ORVANE_LANES == 4
    return reinterpret_cast<Ints>(_mm_madd_epi16(reinterpret_cast<__m128i>(v), reinterpret_cast<__m128i>(v)));
#else
    return reinterpret_cast<Ints>(_mm256_madd_epi16(reinterpret_cast<__m256i>(v), reinterpret_cast<__m256i>(v)));
#endif
}

void RunIntegral(const uint8* pixels, int32 width, const float* sumAbove, float* sum, const uint32* squaresAbove,
                 uint32* squares) {
    Prefix sums, squareSums;
    for (int32 x = 0; x < width; x += kLanes) {
        const Ints values = LoadPixels(pixels + x);
        const Ints rowSums = sums.Next(values);
        const Ints rowSquares = squareSums.Next(Squares(values));
        Store(__builtin_convertvector(rowSums, Floats) + Load<Floats>(sumAbove + x), sum + x);
        Store(reinterpret_cast<UnsignedInts>(rowSquares) + Load<UnsignedInts>(squaresAbove + x), squares + x);
    }
}

inline int32 Absolute(int32 v) { return v < 0 ? -v : v; }

// Directions of a gradient.
constexpr int16 kAlongX = 0;
constexpr int16 kAlongY = 1;
constexpr int16 kRising = 2;  // dx and dy have different signs
constexpr int16 kFalling = 3; // dx and dy have the same sign

/// tan(22.5 degrees) of 65536. The whole part of a product with it is that of the true product for all components of
/// Sobel's 3 by 3 operator, which are at most 1020; a test tries them all.
constexpr uint32 kFlat = 27146;

void RunGradients(const EdgeRows& rows, int32 low, const GradientRow& out) {
    const uint8* __restrict a = rows.above;
    const uint8* __restrict b = rows.here;
    const uint8* __restrict c = rows.below;
    int16* __restrict magnitude = out.magnitude;
    int16* __restrict direction = out.direction;
    const auto limit = static_cast<int16>(low);
    for (int32 x = 0; x < rows.width; ++x) {
        const auto leftSum = static_cast<int16>(a[x] + 2 * b[x] + c[x]);
        const auto rightSum = static_cast<int16>(a[x + 2] + 2 * b[x + 2] + c[x + 2]);
        const auto above = static_cast<int16>(a[x] + 2 * a[x + 1] + a[x + 2]);
        const auto below = static_cast<int16>(c[x] + 2 * c[x + 1] + c[x + 2]);
        const auto dx = static_cast<int16>(rightSum - leftSum);
        const auto dy = static_cast<int16>(below - above);
        const auto ax = static_cast<int16>(Absolute(dx));
        const auto ay = static_cast<int16>(Absolute(dy));
        const auto m = static_cast<int16>(ax + ay);
        magnitude[x] = m > limit ? m : int16{0};
        const auto flat = static_cast<int16>(static_cast<uint16>(ax) * kFlat >> 16);
        const auto steep = static_cast<int16>(flat + 2 * ax);
        const int16 diagonal = static_cast<int16>(dx ^ dy) < 0 ? kRising : kFalling;
        const int16 shallow = ay <= flat ? kAlongX : diagonal;
        direction[x] = ay > steep ? kAlongY : shallow;
    }
}

using Shorts = int16 __attribute__((vector_size(kLanes * 4)));
constexpr int32 kShorts = 2 * kLanes;

/// A bit for each of 2 * kShorts pixels whose mask is set.
inline uint64 BitsOfShorts(const Shorts& low, const Shorts& high) {
#if ORVANE_LANES == 4
    const __m128i bytes = _mm_packs_epi16(reinterpret_cast<__m128i>(low), reinterpret_cast<__m128i>(high));
    return static_cast<uint32>(_mm_movemask_epi8(bytes));
#else
    // Packing works within halves of a vector.
    const __m256i bytes = _mm256_packs_epi16(reinterpret_cast<__m256i>(low), reinterpret_cast<__m256i>(high));
    return static_cast<uint32>(_mm256_movemask_epi8(_mm256_permute4x64_epi64(bytes, 0b11011000)));
#endif
}

/// Whether pixels are the largest along their gradients, as masks. Of an axial plateau the first pixel stays, of a
/// diagonal one none.
inline Shorts AreRidges(const int16* above, const int16* here, const int16* below, const int16* direction) {
    const auto at = [](const int16* p) { return Load<Shorts>(p); };
    const Shorts m = at(here), d = at(direction);
    const Shorts flat = d == kAlongX, rising = d == kRising, diagonal = d >= kRising;
    const Shorts axialFirst = flat ? at(here - 1) : at(above);
    const Shorts axialSecond = flat ? at(here + 1) : at(below);
    const Shorts diagonalFirst = rising ? at(above + 1) : at(above - 1);
    const Shorts diagonalSecond = rising ? at(below - 1) : at(below + 1);
    const Shorts first = diagonal ? diagonalFirst : axialFirst;
    const Shorts second = diagonal ? diagonalSecond : axialSecond - 1;
    return (m > first) & (m > second);
}

void RunRidges(const int16* above, const GradientRow& here, const int16* below, int32 width, int32 high, uint64* ridges,
               uint64* strong) {
    const auto limit = static_cast<int16>(high);
    for (int32 x = 0; x < width; x += 64) {
        uint64 stay = 0, start = 0;
        for (int32 i = 0; i < 64; i += 2 * kShorts) {
            Shorts ridge[2], strongest[2];
            for (int32 half = 0; half < 2; ++half) {
                const int32 at = x + i + half * kShorts;
                ridge[half] = AreRidges(above + at, here.magnitude + at, below + at, here.direction + at);
                strongest[half] = ridge[half] & (Load<Shorts>(here.magnitude + at) > limit);
            }
            stay |= BitsOfShorts(ridge[0], ridge[1]) << i;
            start |= BitsOfShorts(strongest[0], strongest[1]) << i;
        }
        const uint64 inside = width - x < 64 ? (uint64{1} << (width - x)) - 1 : ~uint64{0};
        *ridges++ = stay & inside;
        *strong++ = start & inside;
    }
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
