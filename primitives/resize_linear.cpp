// Linear interpolation in 14-bit fixed point; rows between the two passes hold 6 fractional bits.
#include "primitives/heap_array.h"
#include "primitives/resize_frame.h"

#include <utility>

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
    double sum = 0.0;
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
        for (int64 x = 0; x < elements; ++x) {
            out[x] = static_cast<uint8>((r1[x] * f + r0[x] * (kOne - f) + 524288) >> 20);
        }
    }
    return kOk;
}

template int32 ResizeLinear<1>(const ResizeFrame& frame);
template int32 ResizeLinear<3>(const ResizeFrame& frame);

} // namespace orvane
