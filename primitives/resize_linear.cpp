// Linear interpolation in 14-bit fixed point; rows between the two passes hold 6 fractional bits.
#include "primitives/column_table.h"
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

} // namespace

template <int32 Channels>
int32 ResizeLinear(const ResizeFrame& frame) {
    HeapArray<LinearSample> columns;
    HeapArray<LinearSample> rows;
    const int64 elements = int64{frame.columns.written} * Channels;
    HeapArray<int16> line0;
    HeapArray<int16> line1;
    HeapArray<int16> weights;
    ColumnTable table;
    const auto firstOf = [&columns](int32 j) { return columns[j].first; };
    if (!FillTable(frame.columns, columns) || !FillTable(frame.rows, rows) || !line0.Allocate(elements) ||
        !line1.Allocate(elements) || !weights.Allocate(2 * elements) ||
        !table.Fill(frame.columns, Channels, 2, firstOf)) {
        return kNoMemory;
    }
    for (int64 i = 0; i < elements; ++i) {
        const int32 weight = columns[i / Channels].weight;
        weights[2 * i] = static_cast<int16>(kOne - weight);
        weights[2 * i + 1] = static_cast<int16>(weight);
    }
    const RowKernels& kernels = CurrentRowKernels();
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
            kernels.linearColumns(RegionRow(frame, Channels, held[k]), table.Plan(), Channels, weights.data(), elements,
                                  lines[k]);
        }
        kernels.linearRows(lines[0], lines[1], sample.weight, elements, RowAt(frame.dst, frame.dstStep, i));
    }
    return kOk;
}

template int32 ResizeLinear<1>(const ResizeFrame& frame);
template int32 ResizeLinear<3>(const ResizeFrame& frame);

} // namespace orvane
