// The text of the kernels of gradients and of the edges that follow from them.
#pragma once

#include "primitives/ridge_vectors.h"
#include "primitives/row_kernels.h"

namespace orvane::ORVANE_KERNELS {
namespace {

using Words = int16 __attribute__((vector_size(kBytes)));

inline Words WordsAt(const int16* from) { return reinterpret_cast<Words>(LoadBytes(from)); }
inline Words WordsAt(const uint8* from) { return reinterpret_cast<Words>(WordsOf(from)); }

// --- sums of a separable filter, which stay inside 16 bits ---

/// `at(k)` tells where entry k of the kernel finds its elements.
template <int16... Entries, typename At>
inline void SumBlock(At at, int16* to, int32 x) {
    constexpr int16 kEntries[] = {Entries...};
    Words sum{};
#pragma GCC unroll 5
    for (int32 k = 0; k < static_cast<int32>(sizeof...(Entries)); ++k) {
        if (kEntries[k] != 0) sum += kEntries[k] * WordsAt(at(k) + x);
    }
    StoreBytes(to + x, reinterpret_cast<Vector>(sum));
}

template <int16... Entries, typename At>
inline void WeightedSums(At at, int16* to, int32 count) {
    constexpr int16 kEntries[] = {Entries...};
    int32 x = 0;
    for (; count - x >= kWords; x += kWords) SumBlock<Entries...>(at, to, x);
    if (x < count && count >= kWords) {
        SumBlock<Entries...>(at, to, count - kWords);
        return;
    }
    for (; x < count; ++x) {
        int32 sum = 0;
        for (int32 k = 0; k < static_cast<int32>(sizeof...(Entries)); ++k) sum += kEntries[k] * at(k)[x];
        to[x] = static_cast<int16>(sum);
    }
}

template <int16... Entries>
void RunColumnSums(const uint8* const* rows, int16* to, int32 count) {
    WeightedSums<Entries...>([rows](int32 k) { return rows[k]; }, to, count);
}

template <int16... Entries>
void RunRowSums(const int16* line, int16* to, int32 count) {
    WeightedSums<Entries...>([line](int32 k) { return line + k; }, to, count);
}

// --- edges ---

#if ORVANE_WIDE
inline Vector LargerWords(Vector a, Vector b) { return _mm256_max_epi16(a, b); }
#else
inline Vector LargerWords(Vector a, Vector b) { return _mm_max_epi16(a, b); }
#endif

inline Vector Magnitudes(Vector v) { return LargerWords(v, SubtractWords(Zero(), v)); }
inline int32 Magnitude(int32 v) { return v < 0 ? -v : v; }

/// The magnitudes of a vector of gradients. Adds the bits of their components; of -32768 that is the highest one.
inline void FindMagnitudes(const int16* dx, const int16* dy, Vector limit, int16* to, Vector& bits) {
    const Vector a = Magnitudes(LoadBytes(dx)), b = Magnitudes(LoadBytes(dy)), m = AddWords(a, b);
    bits = Either(bits, Either(a, b));
    StoreBytes(to, Both(m, AreAbove(m, limit)));
}

int32 RunMagnitudes(const int16* dx, const int16* dy, int32 width, int32 low, int16* to) {
    const Vector limit = SplatWord(static_cast<int16>(low));
    Vector found = Zero();
    int32 bits = 0;
    if (width >= kWords) {
        for (int32 x = 0; x < width - kWords; x += kWords) FindMagnitudes(dx + x, dy + x, limit, to + x, found);
        const std::ptrdiff_t last = width - kWords; // again, some of them
        FindMagnitudes(dx + last, dy + last, limit, to + last, found);
        uint16 lanes[kWords];
        StoreBytes(lanes, found);
        for (int32 i = 0; i < kWords; ++i) bits |= lanes[i];
        return bits;
    }
    for (int32 x = 0; x < width; ++x) {
        const int32 a = Magnitude(dx[x]), b = Magnitude(dy[x]), m = a + b;
        bits |= a | b;
        to[x] = static_cast<int16>(m > low ? m : 0);
    }
    return bits;
}

/// Where (a + b)^2 < 2 a^2, that is b < (sqrt(2) - 1) a: b lies within an eighth of a turn around a's axis. No whole
/// numbers but 0 are so near to the bound that a comparison in doubles could err.
inline Vector IsAlong(Vector a, Vector sum) {
    const Vector minusTwice = SubtractWords(Zero(), AddWords(a, a));
    return NegativeWords(PackNumbers(SumsOfProducts(LowPairs(sum, a), LowPairs(sum, minusTwice)),
                                     SumsOfProducts(HighPairs(sum, a), HighPairs(sum, minusTwice))));
}

/// Which magnitudes of components lie within an eighth of a turn around an axis.
struct Axes {
    Vector any, x;
};

template <bool Gentle>
inline Axes AxesOf(Vector a, Vector b) {
    if constexpr (Gentle) {
        const Vector flat = UpperProductOfWords(a, SplatWord(kFlat)), steep = AddWords(flat, AddWords(a, a));
        const Vector alongX = AreAbove(AddWords(flat, SplatWord(1)), b);
        return {Either(alongX, AreAbove(b, steep)), alongX};
    }
    const Vector sum = AddWords(a, b), alongX = IsAlong(a, sum);
    return {Either(alongX, IsAlong(b, sum)), alongX};
}

struct RidgeMasks {
    Vector ridge, strong;
};

template <bool Gentle>
inline RidgeMasks RidgesAt(const EdgeRows16& r, int32 x, Vector high) {
    const Vector dx = LoadBytes(r.dx + x), dy = LoadBytes(r.dy + x);
    const Axes along = AxesOf<Gentle>(Magnitudes(dx), Magnitudes(dy));
#if ORVANE_WIDE
    const Vector rising = NegativeWords(_mm256_xor_si256(dx, dy));
#else
    const Vector rising = NegativeWords(_mm_xor_si128(dx, dy));
#endif
    const Vector ridge = AreRidges(r.above + x, r.here + x, r.below + x, {along.any, along.x, rising});
    return {ridge, AreAbove(LoadBytes(r.here + x), high)};
}

/// Of 64 pixels.
template <bool Gentle>
inline void FindRidgeBits(const EdgeRows16& r, int32 x, Vector high, uint64& ridges, uint64& strong) {
    ridges = strong = 0;
    for (int32 i = 0; i < 64; i += kBytes) {
        const RidgeMasks low = RidgesAt<Gentle>(r, x + i, high), upper = RidgesAt<Gentle>(r, x + i + kWords, high);
        ridges |= uint64{SetBits(PackMasks(low.ridge, upper.ridge))} << i;
        strong |= uint64{SetBits(PackMasks(low.strong, upper.strong))} << i;
    }
    strong &= ridges;
}

template <bool Gentle>
inline void FindRowOfRidges(const EdgeRows16& rows, int32 width, int32 high, uint64* ridges, uint64* strong) {
    const Vector limit = SplatWord(static_cast<int16>(high));
    int32 x = 0;
    for (; width - x >= 64; x += 64) FindRidgeBits<Gentle>(rows, x, limit, *ridges++, *strong++);
    if (x == width) return;
    // The last gradients, and behind them what has no magnitude.
    const std::size_t bytes = sizeof(int16) * static_cast<std::size_t>(width - x);
    int16 dx[64] = {}, dy[64] = {};
    __builtin_memcpy(dx, rows.dx + x, bytes);
    __builtin_memcpy(dy, rows.dy + x, bytes);
    const EdgeRows16 last{dx, dy, rows.above + x, rows.here + x, rows.below + x, Gentle};
    FindRidgeBits<Gentle>(last, 0, limit, *ridges, *strong);
}

void RunRidgeBits(const EdgeRows16& rows, int32 width, int32 high, uint64* ridges, uint64* strong) {
    rows.isGentle ? FindRowOfRidges<true>(rows, width, high, ridges, strong)
                  : FindRowOfRidges<false>(rows, width, high, ridges, strong);
}

/// As many bytes as a vector has from the lowest bits.
inline Vector BytesOfBits(uint64 bits) {
#if ORVANE_WIDE
    const Vector byte = _mm256_setr_epi64x(0, 0x0101010101010101, 0x0202020202020202, 0x0303030303030303);
    const Vector spread = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int32>(bits)), byte);
    const Vector bit = _mm256_set1_epi64x(static_cast<int64>(0x8040201008040201));
#else
    Vector spread = _mm_cvtsi32_si128(static_cast<int32>(bits & 0xFFFF));
    spread = _mm_unpacklo_epi8(spread, spread);
    spread = _mm_unpacklo_epi16(spread, spread);
    spread = _mm_unpacklo_epi32(spread, spread);
    const Vector bit = _mm_set1_epi64x(static_cast<int64>(0x8040201008040201));
#endif
    return Equal(Both(spread, bit), bit);
}

void RunSpreadBits(const uint64* bits, uint8* to, int32 width) {
    if (width < kBytes) {
        for (int32 x = 0; x < width; ++x) to[x] = (bits[x / 64] >> x % 64 & 1) != 0 ? 255 : 0;
        return;
    }
    for (int32 x = 0; x < width - kBytes; x += kBytes) StoreBytes(to + x, BytesOfBits(bits[x / 64] >> x % 64));
    const std::ptrdiff_t last = width - kBytes; // again, some of them
    const int32 shift = static_cast<int32>(last % 64);
    const uint64 behind = shift > 64 - kBytes ? bits[last / 64 + 1] << (64 - shift) : 0;
    StoreBytes(to + last, BytesOfBits(bits[last / 64] >> shift | behind));
}

void RunKeepEdges(const uint8* mark, uint8* to, int32 width) {
    int32 x = 0;
    for (; width - x >= kBytes; x += kBytes) StoreBytes(to + x, Equal(LoadBytes(mark + x), Splat(255)));
    for (; x < width; ++x) to[x] = mark[x] == 255 ? 255 : 0;
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
