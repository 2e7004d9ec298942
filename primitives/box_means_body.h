// The text of the kernel of means of small boxes, three channels: in floats, two pixels at once. What that leaves in
// doubt the doubles decide, whose sums are rounded to floats after each addition, down the columns and then along.
//
// Of r rows and c columns the doubles' sum is rounded r + c times by 2^-24 of itself, that of floats as often, and each
// weight as much, at most four times on the way from a byte to the mean: together (2 r + 2 c + 4) 2^-24 of a mean of up
// to 255, or 2^-16 times as many. The raised mean is rounded by 2^-16 once more. With r + c up to kMostBoxLines that is
// less than 2^-11.
#pragma once

#include "primitives/byte_vectors.h"
#include "primitives/raised_bytes.h"
#include "primitives/row_kernels.h"

namespace orvane::ORVANE_KERNELS {
namespace {

#if ORVANE_WIDE

constexpr int32 kBoxDoubt = 16; // of 2^-15
static_assert(2 * kMostBoxLines + 4 + 1 < 2 * kBoxDoubt);

/// The doubles' pixel.
[[gnu::noinline]] void DecideBoxPixel(const BoxMeans& m, int32 pixel, uint8* to) {
    const BoxSpan& span = m.spans[pixel];
    float total[3] = {};
    const auto add = [&](int64 column, double weight) {
        const int64 last = m.columns - 1; // which goes on beyond the region
        for (int32 c = 0; c < 3; ++c) {
            float down = 0.0F;
            for (int32 k = 0; k < m.rowCount; ++k) {
                const uint8 byte = m.rows[k].row[3 * (column < last ? column : last) + c];
                down = static_cast<float>(down + m.rows[k].weight * byte);
            }
            total[c] = static_cast<float>(total[c] + weight * down);
        }
    };
    if (span.head > 0.0) add(span.first, span.head);
    for (int64 x = span.FirstWhole(); x < span.Tail(); ++x) add(x, 1.0);
    if (span.tail > 0.0) add(span.Tail(), span.tail);
    for (int32 c = 0; c < 3; ++c) {
        const auto mean = static_cast<int32>(total[c] * m.scale + 0.5);
        to[c] = static_cast<uint8>(mean < 255 ? mean : 255);
    }
}

/// Sums down the columns, eight at once; `sums` takes as many.
inline void SumBoxRows(const BoxMeans& m) {
    const int64 count = int64{3} * m.columns;
    int64 x = 0;
    for (; count - x >= 8; x += 8) {
        __m256 sum = _mm256_setzero_ps();
        for (int32 k = 0; k < m.rowCount; ++k) {
            const auto* from = reinterpret_cast<const __m128i*>(m.rows[k].row + x);
            const __m256 bytes = _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(from)));
            sum = _mm256_fmadd_ps(bytes, _mm256_set1_ps(static_cast<float>(m.rows[k].weight)), sum);
        }
        _mm256_storeu_ps(m.sums + x, sum);
    }
    for (; x < count; ++x) {
        float sum = 0.0F;
        for (int32 k = 0; k < m.rowCount; ++k) sum += static_cast<float>(m.rows[k].weight) * m.rows[k].row[x];
        m.sums[x] = sum;
    }
    for (; x < 3 * (int64{m.columns} + m.beyond); ++x) m.sums[x] = m.sums[x - 3];
}

/// The means of two pixels, with a fourth lane each that counts for nothing.
inline __m256i TwoBoxMeans(const BoxMeans& m, int32 pixel, __m256 scale) {
    const __m256i lanes = _mm256_setr_epi32(0, 0, 0, 0, 1, 1, 1, 1);
    const float* a = m.sums + 3 * m.spans[pixel].first;
    const float* b = m.sums + 3 * m.spans[pixel + 1 < m.count ? pixel + 1 : pixel].first;
    const float* weights = m.weights + static_cast<std::ptrdiff_t>(pixel) * m.taps;
    __m256 total = _mm256_setzero_ps();
    for (int32 k = 0; k < m.taps; ++k, a += 3, b += 3, weights += 2) {
        double pair;
        __builtin_memcpy(&pair, weights, sizeof pair);
        const __m256 weight = _mm256_permutevar_ps(_mm256_castpd_ps(_mm256_set1_pd(pair)), lanes);
        const __m256 sums = _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(a)), _mm_loadu_ps(b), 1);
        total = _mm256_fmadd_ps(sums, weight, total);
    }
    const __m256 raised = _mm256_fmadd_ps(total, scale, _mm256_set1_ps(kRaiseBy<kBoxDoubt>));
    return DoubledNumbers(_mm256_min_ps(raised, _mm256_set1_ps(511.75F)));
}

void RunBoxMeans3(const BoxMeans& means, uint8* out) {
    const BoxMeans m = means;
    SumBoxRows(m);
    const __m256 scale = _mm256_set1_ps(static_cast<float>(m.scale));
    const __m256i places = TwiceTheSame(_mm_setr_epi8(2, 6, 10, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1));
    for (int32 j = 0; j < m.count; j += 2) {
        const __m256i both = TwoBoxMeans(m, j, scale);
        const __m256i bytes = _mm256_shuffle_epi8(both, places);
        const int32 pixels[2] = {_mm_cvtsi128_si32(_mm256_castsi256_si128(bytes)),
                                 _mm_cvtsi128_si32(_mm256_extracti128_si256(bytes, 1))};
        uint8* to = out + std::ptrdiff_t{3} * j;
        __builtin_memcpy(to, &pixels[0], 3);
        if (j + 1 < m.count) __builtin_memcpy(to + 3, &pixels[1], 3);
        const uint32 doubts = DoubtsOf<kBoxDoubt>(both);
        if ((doubts & 0x07) != 0) DecideBoxPixel(m, j, to);
        if ((doubts & 0x70) != 0 && j + 1 < m.count) DecideBoxPixel(m, j + 1, to + 3);
    }
}

#endif

} // namespace
} // namespace orvane::ORVANE_KERNELS
