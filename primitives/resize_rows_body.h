// The text of the kernels of scaled rows. Columns are fetched by shuffles of sixteen bytes where the processor has
// them, else one by one.
#pragma once

#include "primitives/byte_vectors.h"
#include "primitives/raised_bytes.h"
#include "primitives/row_kernels.h"

namespace orvane::ORVANE_KERNELS {
namespace {

// --- linear: 14 fractional bits along a row, 6 between the passes ---

constexpr int32 kLinearOne = 1 << 14;
constexpr int32 kLinearHalf = 1 << 19; // of the 20 fractional bits between two rows

#if ORVANE_WIDE

/// The block's bytes from `row` on.
inline __m128i Fetch(const uint8* row, const ColumnBlock& block) {
    const __m128i places = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(block.places));
    return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row + block.base)), places);
}

/// Sums of pairs of bytes, weighted.
inline __m256i LinearSums(__m128i pairs, const int16* weights) {
    const __m256i sums = _mm256_madd_epi16(_mm256_cvtepu8_epi16(pairs), LoadBytes(weights));
    return _mm256_srai_epi32(_mm256_add_epi32(sums, _mm256_set1_epi32(128)), 8);
}

inline void LinearBlock(const uint8* row, const ColumnBlock& block, int32 channels, const int16* weights, int16* to) {
    const __m256i sums = LinearSums(_mm_unpacklo_epi8(Fetch(row, block), Fetch(row + channels, block)), weights);
    const __m128i words = _mm_packs_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), words);
}

/// Two blocks of pairs.
inline void LinearBlocks(const uint8* row, const ColumnPairs* blocks, const int16* weights, int16* to) {
    const auto pairs = [row](const ColumnPairs& block) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + block.base));
        return _mm_shuffle_epi8(bytes, _mm_loadu_si128(reinterpret_cast<const __m128i*>(block.places)));
    };
    const __m256i a = LinearSums(pairs(blocks[0]), weights), b = LinearSums(pairs(blocks[1]), weights + kBytes / 2);
    StoreBytes(to, _mm256_permute4x64_epi64(PackNumbers(a, b), 0xD8));
}

#endif

inline int16 LinearElement(const uint8* pixel, int32 channels, const int16* weights) {
    return static_cast<int16>((weights[0] * pixel[0] + weights[1] * pixel[channels] + 128) >> 8);
}

void RunLinearColumns(const uint8* row, const ColumnPlan& plan, int32 channels, const int16* weights, int64 count,
                      int16* to) {
    int64 x = 0;
#if ORVANE_WIDE
    for (; x < plan.pairElements; x += int64{2} * kColumnBlock) {
        LinearBlocks(row, plan.pairs + x / kColumnBlock, weights + 2 * x, to + x);
    }
    const ColumnBlock* block = plan.blocks + x / kColumnBlock;
    for (; count - x >= kColumnBlock; x += kColumnBlock, ++block) {
        if (block->base != kNoColumnBlock) {
            LinearBlock(row, *block, channels, weights + 2 * x, to + x);
            continue;
        }
        for (int64 i = x; i < x + kColumnBlock; ++i) {
            to[i] = LinearElement(row + plan.offsets[i], channels, weights + 2 * i);
        }
    }
#endif
    for (; x < count; ++x) to[x] = LinearElement(row + plan.offsets[x], channels, weights + 2 * x);
}

#if ORVANE_WIDE
inline Vector PairsLow(Vector a, Vector b) { return _mm256_unpacklo_epi16(a, b); }
inline Vector PairsHigh(Vector a, Vector b) { return _mm256_unpackhi_epi16(a, b); }
/// Elements between those of two rows, which stand in turn; `weights` likewise.
inline Vector Between(Vector inTurn, Vector weights) {
    const Vector sums = _mm256_add_epi32(_mm256_madd_epi16(inTurn, weights), _mm256_set1_epi32(kLinearHalf));
    return _mm256_srai_epi32(sums, 20);
}
inline Vector SplatPair(int32 first, int32 second) { return _mm256_set1_epi32(first | second << 16); }
inline Vector WordsInOrder(Vector packed) { return _mm256_permute4x64_epi64(packed, 0xD8); }
#else
inline Vector PairsLow(Vector a, Vector b) { return _mm_unpacklo_epi16(a, b); }
inline Vector PairsHigh(Vector a, Vector b) { return _mm_unpackhi_epi16(a, b); }
inline Vector Between(Vector inTurn, Vector weights) {
    const Vector sums = _mm_add_epi32(_mm_madd_epi16(inTurn, weights), _mm_set1_epi32(kLinearHalf));
    return _mm_srai_epi32(sums, 20);
}
inline Vector SplatPair(int32 first, int32 second) { return _mm_set1_epi32(first | second << 16); }
inline Vector WordsInOrder(Vector packed) { return packed; }
#endif

inline Vector BetweenWords(const int16* row0, const int16* row1, Vector weights) {
    const Vector a = LoadBytes(row0), b = LoadBytes(row1);
    return PackNumbers(Between(PairsLow(a, b), weights), Between(PairsHigh(a, b), weights));
}

void RunLinearRows(const int16* row0, const int16* row1, int32 weight, int64 count, uint8* to) {
    const Vector weights = SplatPair(kLinearOne - weight, weight);
    int64 x = 0;
    for (; count - x >= kBytes; x += kBytes) {
        const Vector low = BetweenWords(row0 + x, row1 + x, weights);
        const Vector high = BetweenWords(row0 + x + kBytes / 2, row1 + x + kBytes / 2, weights);
        StoreBytes(to + x, WordsInOrder(PackWords(low, high)));
    }
    for (; x < count; ++x) {
        to[x] = static_cast<uint8>((row1[x] * weight + row0[x] * (kLinearOne - weight) + kLinearHalf) >> 20);
    }
}

// --- cubic: the polynomial through four neighbours, in doubles, whose sums along a row are rounded to floats ---

inline double Polynomial(double s0, double s1, double s2, double s3, const CubicPoint& p) {
    const double d1 = s1 - s0;
    const double d2 = (s2 - s1) - d1;
    const double d3 = (s1 - 2.0 * s2 + s3) - d2;
    return s0 + p.a * d1 + p.b * d2 + p.c * d3;
}

inline uint8 CubicByte(double value) {
    const auto whole = static_cast<int32>(value + 0.5000001);
    return static_cast<uint8>(whole < 0 ? 0 : whole > 255 ? 255 : whole);
}

void RunCubicColumns(const uint8* row, const ColumnPlan& plan, int32 channels, const CubicWeights& weights, int64 count,
                     float* to) {
    const CubicWeights w = weights;
    const std::ptrdiff_t next = channels;
    for (int64 x = 0; x < count; ++x) {
        const uint8* p = row + plan.offsets[x];
        to[x] = static_cast<float>(Polynomial(p[0], p[next], p[2 * next], p[3 * next], {0, w.a[x], w.b[x], w.c[x]}));
    }
}

void RunCubicRows(const CubicRows& rows, int64 count, uint8* to) {
    const CubicRows r = rows;
    for (int64 x = 0; x < count; ++x) {
        to[x] = CubicByte(Polynomial(r.lines[0][x], r.lines[1][x], r.lines[2][x], r.lines[3][x], r.down));
    }
}

// --- box average: doubles whose sums are rounded to floats ---

#if ORVANE_WIDE

inline __m256 AddWeighted(__m256 sum, __m256i bytes, __m256d weight) {
    const auto half = [&](__m128 s, __m128i b) {
        return _mm256_cvtpd_ps(_mm256_add_pd(_mm256_cvtps_pd(s), _mm256_mul_pd(weight, _mm256_cvtepi32_pd(b))));
    };
    const __m128 low = half(_mm256_castps256_ps128(sum), _mm256_castsi256_si128(bytes));
    const __m128 high = half(_mm256_extractf128_ps(sum, 1), _mm256_extracti128_si256(bytes, 1));
    return _mm256_insertf128_ps(_mm256_castps128_ps256(low), high, 1);
}

/// Eight elements; how many of `count` were done.
inline int64 BoxBlocks(const WeightedRow* rows, int32 rowCount, bool goesOn, float* sums, int64 count) {
    int64 x = 0;
    for (; count - x >= 8; x += 8) {
        __m256 sum = goesOn ? _mm256_loadu_ps(sums + x) : _mm256_setzero_ps();
        for (int32 k = 0; k < rowCount; ++k) {
            const __m256i bytes =
                _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(rows[k].row + x)));
            sum = rows[k].weight == 1.0 ? _mm256_add_ps(sum, _mm256_cvtepi32_ps(bytes))
                                        : AddWeighted(sum, bytes, _mm256_set1_pd(rows[k].weight));
        }
        _mm256_storeu_ps(sums + x, sum);
    }
    return x;
}

#else

/// With a weight of 1 the sum of doubles is exact, and so that of floats has the same rounding.
inline int64 BoxBlocks(const WeightedRow* rows, int32 rowCount, bool goesOn, float* sums, int64 count) {
    for (int64 x = 0; !goesOn && x < count; ++x) sums[x] = 0.0F;
    float* __restrict to = sums;
    for (int32 k = 0; k < rowCount; ++k) {
        const uint8* __restrict row = rows[k].row;
        const double weight = rows[k].weight;
        if (weight == 1.0) {
            for (int64 x = 0; x < count; ++x) to[x] += static_cast<float>(row[x]);
        } else {
            for (int64 x = 0; x < count; ++x) to[x] = static_cast<float>(to[x] + weight * row[x]);
        }
    }
    return count;
}

#endif

void RunBoxRows(const WeightedRow* rows, int32 rowCount, bool goesOn, float* sums, int64 count) {
    for (int64 x = BoxBlocks(rows, rowCount, goesOn, sums, count); x < count; ++x) {
        float sum = goesOn ? sums[x] : 0.0F;
        for (int32 k = 0; k < rowCount; ++k) sum = static_cast<float>(sum + rows[k].weight * rows[k].row[x]);
        sums[x] = sum;
    }
}

template <int32 Channels>
inline void BoxElement(const float* p, const BoxSpan& span, double scale, uint8* out) {
    float total[Channels] = {};
    if (span.head > 0.0) {
        for (int32 c = 0; c < Channels; ++c) total[c] = static_cast<float>(total[c] + span.head * p[c]);
        p += Channels;
    }
    for (int64 n = span.whole; n > 0; --n, p += Channels) {
        for (int32 c = 0; c < Channels; ++c) total[c] += p[c];
    }
    if (span.tail > 0.0) {
        for (int32 c = 0; c < Channels; ++c) total[c] = static_cast<float>(total[c] + span.tail * p[c]);
    }
    for (int32 c = 0; c < Channels; ++c) {
        // Rounded additions of a huge box may pass white.
        const auto mean = static_cast<int32>(total[c] * scale + 0.5);
        out[c] = static_cast<uint8>(mean < 255 ? mean : 255);
    }
}

#if ORVANE_WIDE

/// All channels of a pixel at once; the fourth lane, whose sum lies behind them, counts for nothing.
inline int32 BoxPixel(const float* p, const BoxSpan& span, double scale) {
    const auto weighted = [](__m128 total, double weight, const float* at) {
        return _mm256_cvtpd_ps(_mm256_add_pd(_mm256_cvtps_pd(total),
                                             _mm256_mul_pd(_mm256_set1_pd(weight), _mm256_cvtps_pd(_mm_loadu_ps(at)))));
    };
    __m128 total = _mm_setzero_ps();
    if (span.head > 0.0) {
        total = weighted(total, span.head, p);
        p += 3;
    }
    for (int64 n = span.whole; n > 0; --n, p += 3) total = _mm_add_ps(total, _mm_loadu_ps(p));
    if (span.tail > 0.0) total = weighted(total, span.tail, p);
    const __m256d mean =
        _mm256_add_pd(_mm256_mul_pd(_mm256_cvtps_pd(total), _mm256_set1_pd(scale)), _mm256_set1_pd(0.5));
    const __m128i numbers = _mm256_cvttpd_epi32(mean);
    const __m128i words = _mm_packs_epi32(numbers, numbers);
    return _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
}

template <>
inline void BoxElement<3>(const float* p, const BoxSpan& span, double scale, uint8* out) {
    const int32 pixel = BoxPixel(p, span, scale);
    __builtin_memcpy(out, &pixel, 3);
}

#endif

template <int32 Channels>
void RunBoxColumns(const float* sums, const BoxSpan* spans, int32 count, double scale, uint8* out) {
    int32 j = 0;
#if ORVANE_WIDE
    if constexpr (Channels == 3) { // the byte behind a pixel is the next one's
        for (; j < count - 1; ++j, out += 3) {
            const int32 pixel = BoxPixel(sums + static_cast<std::ptrdiff_t>(spans[j].first) * 3, spans[j], scale);
            __builtin_memcpy(out, &pixel, 4);
        }
    }
#endif
    for (; j < count; ++j, out += Channels) {
        BoxElement<Channels>(sums + static_cast<std::ptrdiff_t>(spans[j].first) * Channels, spans[j], scale, out);
    }
}

} // namespace
} // namespace orvane::ORVANE_KERNELS
