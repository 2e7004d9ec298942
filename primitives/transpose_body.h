// The text of the kernels of transpositions, which quarter turns are made of: pixel i of row k comes from where i ways
// along and k ways down lead. Small squares go through registers, so that neither side is read or written by columns.
#pragma once

#include "primitives/byte_vectors.h"
#include "primitives/row_kernels.h"

namespace orvane::ORVANE_KERNELS {
namespace {

template <int32 Channels>
inline void TransposePlainly(const Transposition& t, int32 firstColumn, int32 firstRow, int32 endRow) {
    for (int32 k = firstRow; k < endRow; ++k) {
        const uint8* from = t.from + k * t.down + firstColumn * t.along;
        uint8* to = t.to + k * t.toStep + std::ptrdiff_t{firstColumn} * Channels;
        for (int32 i = firstColumn; i < t.columns; ++i, from += t.along, to += Channels) {
            for (int32 c = 0; c < Channels; ++c) to[c] = from[c];
        }
    }
}

// --- one channel: eight by eight ---

struct TwoRows {
    __m128i first, second;
};

inline TwoRows InTurn8(__m128i a, __m128i b) { return {_mm_unpacklo_epi8(a, b), _mm_unpackhi_epi8(a, b)}; }

/// The first eight bytes of `v`, and the others.
inline void StoreTwo(__m128i v, uint8* first, uint8* second) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(first), v);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(second), _mm_unpackhi_epi64(v, v));
}

/// Byte k of eight lines becomes the line `to` + k * `step`.
inline void TransposeEight(const uint8* from, std::ptrdiff_t along, uint8* to, std::ptrdiff_t step) {
    const auto line = [&](int32 i) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from + i * along)); };
    const __m128i a = _mm_unpacklo_epi8(line(0), line(4)), b = _mm_unpacklo_epi8(line(2), line(6));
    const __m128i c = _mm_unpacklo_epi8(line(1), line(5)), d = _mm_unpacklo_epi8(line(3), line(7));
    const TwoRows even = InTurn8(a, b), odd = InTurn8(c, d); // of lines 0, 2, 4, 6 and 1, 3, 5, 7
    const TwoRows low = InTurn8(even.first, odd.first), high = InTurn8(even.second, odd.second);
    StoreTwo(low.first, to, to + step);
    StoreTwo(low.second, to + 2 * step, to + 3 * step);
    StoreTwo(high.first, to + 4 * step, to + 5 * step);
    StoreTwo(high.second, to + 6 * step, to + 7 * step);
}

void RunTranspose1(const Transposition& t) {
    int32 k = 0;
    for (; t.rows - k >= 8; k += 8) {
        // Towards lower addresses the last of the rows comes from the first of the bytes.
        const uint8* from = t.from + (t.down > 0 ? k : -(k + 7));
        uint8* to = t.to + (t.down > 0 ? k : k + 7) * t.toStep;
        int32 i = 0;
        for (; t.columns - i >= 8; i += 8) {
            TransposeEight(from + i * t.along, t.along, to + i, t.down > 0 ? t.toStep : -t.toStep);
        }
        TransposePlainly<1>(t, i, k, k + 8);
    }
    TransposePlainly<1>(t, 0, k, t.rows);
}

// --- three channels ---

#if ORVANE_WIDE

/// Four pixels of eight lines, the lines' first four in the lower halves; the pixels widened to four bytes.
inline __m256i FourPixels(const uint8* from, std::ptrdiff_t along, bool upwards) {
    const __m256i order = TwiceTheSame(_mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1));
    const __m256i reversed = TwiceTheSame(_mm_setr_epi8(9, 10, 11, -1, 6, 7, 8, -1, 3, 4, 5, -1, 0, 1, 2, -1));
    return _mm256_shuffle_epi8(LoadHalves(from, from + 4 * along), upwards ? order : reversed);
}

/// 24 bytes of eight pixels.
inline void StoreEightPixels(__m256i widened, uint8* to) {
    const __m256i order = TwiceTheSame(_mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
    const __m256i pixels = _mm256_shuffle_epi8(widened, order);
    const __m128i last = _mm256_extracti128_si256(pixels, 1);
    const int32 end = _mm_extract_epi32(last, 2);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm256_castsi256_si128(pixels));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 12), last);
    __builtin_memcpy(to + 20, &end, sizeof end);
}

constexpr int32 kTransposedColumns = 8;

inline void TransposeFour(const uint8* from, std::ptrdiff_t along, bool upwards, uint8* to, std::ptrdiff_t step) {
    const __m256i a = FourPixels(from, along, upwards), b = FourPixels(from + along, along, upwards);
    const __m256i c = FourPixels(from + 2 * along, along, upwards), d = FourPixels(from + 3 * along, along, upwards);
    const __m256i ab0 = _mm256_unpacklo_epi32(a, b), ab2 = _mm256_unpackhi_epi32(a, b);
    const __m256i cd0 = _mm256_unpacklo_epi32(c, d), cd2 = _mm256_unpackhi_epi32(c, d);
    StoreEightPixels(_mm256_unpacklo_epi64(ab0, cd0), to);
    StoreEightPixels(_mm256_unpackhi_epi64(ab0, cd0), to + step);
    StoreEightPixels(_mm256_unpacklo_epi64(ab2, cd2), to + 2 * step);
    StoreEightPixels(_mm256_unpackhi_epi64(ab2, cd2), to + 3 * step);
}

#else

inline uint32 FourBytes(const uint8* from) {
    uint32 bytes;
    __builtin_memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

constexpr int32 kTransposedColumns = 4;

inline void TransposeFour(const uint8* from, std::ptrdiff_t along, bool upwards, uint8* to, std::ptrdiff_t step) {
    for (int32 k = 0; k < 4; ++k, to += step) {
        const uint8* p = from + (upwards ? 3 * k : 9 - 3 * k);
        const uint32 a = FourBytes(p), b = FourBytes(p + along), c = FourBytes(p + 2 * along);
        const uint32 d = FourBytes(p + 3 * along);
        const uint32 words[3] = {(a & 0xFFFFFF) | b << 24, (b >> 8 & 0xFFFF) | c << 16, (c >> 16 & 0xFF) | d << 8};
        __builtin_memcpy(to, words, sizeof words);
    }
}

#endif

void RunTranspose3(const Transposition& t) {
    int32 k = 0;
    for (; t.rows - k >= 4; k += 4) {
        const bool upwards = t.down > 0;
        const uint8* from = t.from + (upwards ? 3 * k : -3 * (k + 3));
        uint8* to = t.to + k * t.toStep;
        int32 i = 0;
        for (; t.columns - i >= kTransposedColumns; i += kTransposedColumns) {
            TransposeFour(from + i * t.along, t.along, upwards, to + std::ptrdiff_t{3} * i, t.toStep);
        }
        TransposePlainly<3>(t, i, k, k + 4);
    }
    TransposePlainly<3>(t, 0, k, t.rows);
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
