// Linear interpolation in 14-bit fixed point; rows between the two passes hold 6 fractional bits.
#include "primitives/heap_array.h"
#include "primitives/resize_frame.h"

#include <utility>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orvane {
namespace {

constexpr int32 kOne = 1 << 14;

/// A sample between the pixels `first` and `first + 1` of the region; `weight` is the second one's.
struct LinearSample {
    int32 first;
    int32 weight;
};

bool FillTable(const ResizeAxis& axis, HeapArray<LinearSample>& table) {
    if (!table.Allocate(axis.written)) return false;
    const double step = GridStep(axis);
    double sum = FirstOfSums(0.0, step, axis.skipped);
    for (int32 i = 0; i < axis.written; ++i, sum += step) {
        const double position = GridPosition(sum, axis);
        const int32 whole = WholePosition(position, axis.length);
        // The source's last pixel has no pixel after it: it is the second of the pair before. That pair
        // may begin before the region, but never before the source, which has two pixels at least.
        if (whole == axis.extent - 1 - axis.origin) {
            table[i] = {whole - 1, kOne};
        } else {
            table[i] = {whole, static_cast<int32>((position - whole) * kOne + kPositionNudge)};
        }
    }
    return true;
}

template <int32 Channels>
void InterpolateRow(const uint8* row, const LinearSample* samples, int32 count, int16* out) {
    for (int32 j = 0; j < count; ++j, out += Channels) {
        const uint8* pixel = row + static_cast<std::ptrdiff_t>(samples[j].first) * Channels;
        const int32 f = samples[j].weight;
        for (int32 c = 0; c < Channels; ++c) {
            out[c] = static_cast<int16>(((kOne - f) * pixel[c] + f * pixel[c + Channels] + 128) >> 8);
        }
    }
}

constexpr int32 kHalf = 1 << 19; // of the 20 fractional bits between two rows

#ifdef __SSE2__

/// Four elements between those of two rows, which stand in turn; `weights` likewise.
__m128i BetweenFour(__m128i inTurn, __m128i weights) {
    return _mm_srai_epi32(_mm_add_epi32(_mm_madd_epi16(inTurn, weights), _mm_set1_epi32(kHalf)), 20);
}

/// How many elements were written.
int64 InterpolateColumnBlocks(const int16* r0, const int16* r1, int32 f, int64 elements, uint8* out) {
    const __m128i weights =
        _mm_unpacklo_epi16(_mm_set1_epi16(static_cast<int16>(kOne - f)), _mm_set1_epi16(static_cast<int16>(f)));
    int64 x = 0;
    for (; elements - x >= 8; x += 8) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(r0 + x));
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(r1 + x));
        const __m128i words = _mm_packs_epi32(BetweenFour(_mm_unpacklo_epi16(a, b), weights),
                                              BetweenFour(_mm_unpackhi_epi16(a, b), weights));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + x), _mm_packus_epi16(words, words));
    }
    return x;
}

#else

int64 InterpolateColumnBlocks(const int16*, const int16*, int32, int64, uint8*) { return 0; }

#endif

} // namespace

template <int32 Channels>
int32 ResizeLinear(const ResizeFrame& frame) {
    HeapArray<LinearSample> columns;
    HeapArray<LinearSample> rows;
    const int64 elements = int64{frame.columns.written} * Channels;
    HeapArray<int16> line0;
    HeapArray<int16> line1;
    if (!FillTable(frame.columns, columns) || !FillTable(frame.rows, rows) || !line0.Allocate(elements) ||
        !line1.Allocate(elements)) {
        return kNoMemory;
    }
    // Source rows that the two lines hold; the first is never needed before the region's row -1.
    constexpr int32 kNone = -2;
    int16* lines[2] = {line0.data(), line1.data()};
    int32 held[2] = {kNone, kNone};
    for (int32 i = 0; i < frame.rows.written; ++i) {
        const LinearSample sample = rows[i];
        if (held[1] == sample.first) {
            std::swap(lines[0], lines[1]);
            std::swap(held[0], held[1]);
        }
        for (int32 k = 0; k < 2; ++k) {
            if (held[k] == sample.first + k) continue;
            held[k] = sample.first + k;
            InterpolateRow<Channels>(RegionRow(frame, Channels, held[k]), columns.data(), frame.columns.written,
                                     lines[k]);
        }
        const int16* r0 = lines[0];
        const int16* r1 = lines[1];
        const int32 f = sample.weight;
        uint8* out = RowAt(frame.dst, frame.dstStep, i);
        for (int64 x = InterpolateColumnBlocks(r0, r1, f, elements, out); x < elements; ++x) {
            out[x] = static_cast<uint8>((r1[x] * f + r0[x] * (kOne - f) + kHalf) >> 20);
        }
    }
    return kOk;
}

template int32 ResizeLinear<1>(const ResizeFrame& frame);
template int32 ResizeLinear<3>(const ResizeFrame& frame);

} // namespace orvane
