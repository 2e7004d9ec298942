// The text of the kernels that look at a window of pixels.
#pragma once

#include "primitives/byte_vectors.h"
#include "primitives/row_kernels.h"

namespace orvane::ORVANE_KERNELS {
namespace {

/// Blocks of `Vectors` vectors, so that the look at a row's address serves several; what is left of the row.
template <int32 Vectors>
inline int64 LowestBlocks(const uint8* const* rows, int32 count, uint8* result, int64 x, int64 width) {
    for (; width - x >= Vectors * kBytes; x += Vectors * kBytes) {
        Vector lowest[Vectors];
        for (int32 i = 0; i < Vectors; ++i) lowest[i] = LoadBytes(rows[0] + x + i * kBytes);
        for (int32 k = 1; k < count; ++k) {
            const uint8* row = rows[k] + x;
            for (int32 i = 0; i < Vectors; ++i) lowest[i] = Smallest(lowest[i], LoadBytes(row + i * kBytes));
        }
        for (int32 i = 0; i < Vectors; ++i) StoreBytes(result + x + i * kBytes, lowest[i]);
    }
    return x;
}

/// Blocks of two vectors of so many rows, whose addresses stay in registers.
template <int32 Count>
inline int64 LowestOf(const uint8* const* rows, uint8* result, int64 width) {
    const uint8* row[Count];
    for (int32 k = 0; k < Count; ++k) row[k] = rows[k];
    int64 x = 0;
    for (; width - x >= 2 * kBytes; x += 2 * kBytes) {
        Vector a = LoadBytes(row[0] + x), b = LoadBytes(row[0] + x + kBytes);
        for (int32 k = 1; k < Count; ++k) {
            a = Smallest(a, LoadBytes(row[k] + x));
            b = Smallest(b, LoadBytes(row[k] + x + kBytes));
        }
        StoreBytes(result + x, a);
        StoreBytes(result + x + kBytes, b);
    }
    return x;
}

void RunLowest(const uint8* const* rows, int32 count, uint8* result, int64 width) {
    int64 x = count == 3   ? LowestOf<3>(rows, result, width)
              : count == 5 ? LowestOf<5>(rows, result, width)
                           : LowestBlocks<4>(rows, count, result, 0, width);
    for (x = LowestBlocks<1>(rows, count, result, x, width); x < width; ++x) {
        uint8 lowest = rows[0][x];
        for (int32 k = 1; k < count; ++k) lowest = rows[k][x] < lowest ? rows[k][x] : lowest;
        result[x] = lowest;
    }
}

/// The smallest of the first `Count` rows, and of the last: what both have in common is found once.
template <int32 Count>
inline int64 LowestOfTwo(const uint8* const* rows, uint8* first, uint8* last, int64 width) {
    const uint8* row[Count + 1];
    for (int32 k = 0; k <= Count; ++k) row[k] = rows[k];
    int64 x = 0;
    for (; width - x >= 2 * kBytes; x += 2 * kBytes) {
        Vector a = LoadBytes(row[1] + x), b = LoadBytes(row[1] + x + kBytes);
        for (int32 k = 2; k < Count; ++k) {
            a = Smallest(a, LoadBytes(row[k] + x));
            b = Smallest(b, LoadBytes(row[k] + x + kBytes));
        }
        StoreBytes(first + x, Smallest(a, LoadBytes(row[0] + x)));
        StoreBytes(first + x + kBytes, Smallest(b, LoadBytes(row[0] + x + kBytes)));
        StoreBytes(last + x, Smallest(a, LoadBytes(row[Count] + x)));
        StoreBytes(last + x + kBytes, Smallest(b, LoadBytes(row[Count] + x + kBytes)));
    }
    return x;
}

void RunLowestOfTwo(const uint8* const* rows, int32 count, uint8* first, uint8* last, int64 width) {
    int64 x = count == 3 ? LowestOfTwo<3>(rows, first, last, width) : LowestOfTwo<5>(rows, first, last, width);
    for (; x < width; ++x) {
        uint8 shared = rows[1][x];
        for (int32 k = 2; k < count; ++k) shared = rows[k][x] < shared ? rows[k][x] : shared;
        first[x] = rows[0][x] < shared ? rows[0][x] : shared;
        last[x] = rows[count][x] < shared ? rows[count][x] : shared;
    }
}

void RunSumOfThree(const uint8* const (&rows)[3], uint16* sums, int64 width) {
    const uint8* a = rows[0];
    const uint8* b = rows[1];
    const uint8* c = rows[2];
    int64 x = 0;
    for (; width - x >= kBytes / 2; x += kBytes / 2) {
        StoreBytes(sums + x, AddWords(AddWords(WordsOf(a + x), WordsOf(b + x)), WordsOf(c + x)));
    }
    for (; x < width; ++x) sums[x] = static_cast<uint16>(a[x] + b[x] + c[x]);
}

/// FixedPointMean of nine is a multiplication by 3641 and a shift by 15; with twice that factor the result is
/// the product's high word.
constexpr uint32 kNinth = 7282;

#if ORVANE_WIDE
inline Vector HighProducts(Vector words, uint32 factor) {
    return _mm256_mulhi_epu16(words, _mm256_set1_epi16(static_cast<int16>(factor)));
}
inline Vector PackInOrder(Vector low, Vector high) { return _mm256_permute4x64_epi64(PackWords(low, high), 0xD8); }
#else
inline Vector HighProducts(Vector words, uint32 factor) {
    return _mm_mulhi_epu16(words, _mm_set1_epi16(static_cast<int16>(factor)));
}
inline Vector PackInOrder(Vector low, Vector high) { return PackWords(low, high); }
#endif

void RunMeanOfNine(const uint16* const (&sums)[3], uint8* result, int64 width) {
    const uint16* a = sums[0];
    const uint16* b = sums[1];
    const uint16* c = sums[2];
    const auto means = [&](int64 x) {
        return HighProducts(AddWords(AddWords(LoadBytes(a + x), LoadBytes(b + x)), LoadBytes(c + x)), kNinth);
    };
    int64 x = 0;
    for (; width - x >= kBytes; x += kBytes) StoreBytes(result + x, PackInOrder(means(x), means(x + kBytes / 2)));
    for (; x < width; ++x) result[x] = static_cast<uint8>((uint32{a[x]} + b[x] + c[x]) * kNinth >> 16);
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
