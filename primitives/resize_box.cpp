// Box average: the mean of the source pixels that a result pixel covers. Weights are doubles; the
// sums are floats, rounded at every addition, rows first, then columns.
#include "primitives/heap_array.h"
#include "primitives/resize_frame.h"

#include <cmath>

namespace orvane {
namespace {

/// The part of an axis that one result pixel covers: `head` of pixel `first` (unless 0), then `whole`
/// pixels, then `tail` (unless 0) of the pixel after them.
struct BoxSpan {
    int64 first;
    int64 whole;
    double head;
    double tail;

    int64 FirstWhole() const { return first + (head > 0.0 ? 1 : 0); }
    int64 Tail() const { return FirstWhole() + whole; }
    int64 End() const { return Tail() + (tail > 0.0 ? 1 : 0); }
};

double Worth(double weight) { return weight > kPositionNudge ? weight : 0.0; }

bool FillTable(const ResizeAxis& axis, HeapArray<BoxSpan>& table) {
    if (!table.Allocate(axis.written)) return false;
    const double box = 1.0 / axis.factor;
    double whole = std::floor(box);
    double fraction = box - whole;
    BoxSpan span = {0, static_cast<int64>(whole), 0.0, Worth(fraction)};
    for (int32 i = -axis.skipped; i < axis.written; ++i) {
        if (i >= 0) table[i] = span;
        const int64 shared = span.Tail(); // of this pixel, `fraction` is used up
        const double rest = 1.0 - fraction;
        whole = std::floor(kPositionNudge + box - rest);
        fraction = box - rest - whole;
        const double head = Worth(rest);
        span = {head > 0.0 ? shared : shared + 1, static_cast<int64>(whole), head, Worth(fraction)};
    }
    return true;
}

void AddRow(const uint8* row, int64 count, float* sums) {
    for (int64 x = 0; x < count; ++x) sums[x] += static_cast<float>(row[x]);
}

void AddWeightedRow(const uint8* row, int64 count, double weight, float* sums) {
    for (int64 x = 0; x < count; ++x) sums[x] = static_cast<float>(sums[x] + weight * row[x]);
}

template <int32 Channels>
void AverageColumns(const float* sums, const BoxSpan* spans, int32 count, double scale, uint8* out) {
    for (int32 j = 0; j < count; ++j, out += Channels) {
        const BoxSpan& span = spans[j];
        const float* p = sums + static_cast<std::ptrdiff_t>(span.first) * Channels;
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
            out[c] = static_cast<uint8>(std::min(static_cast<int32>(total[c] * scale + 0.5), 255));
        }
    }
}

} // namespace

/// Of columns that no result pixel covers nothing is summed: the region begins where the first box does.
void LeaveOutUncovered(ResizeAxis& axis, HeapArray<BoxSpan>& table) {
    const auto uncovered = static_cast<int32>(std::min<int64>(table[0].first, axis.length - 1));
    for (int32 i = 0; i < axis.written; ++i) table[i].first -= uncovered;
    axis.origin += uncovered;
    axis.length -= uncovered;
}

template <int32 Channels>
int32 ResizeBoxAverage(const ResizeFrame& whole) {
    ResizeFrame frame = whole;
    HeapArray<BoxSpan> columns;
    HeapArray<BoxSpan> rows;
    if (!FillTable(frame.columns, columns) || !FillTable(frame.rows, rows)) return kNoMemory;
    LeaveOutUncovered(frame.columns, columns);

    // A box may reach past the region (a product below 1, or just under a whole number): there the
    // region's last row and column go on.
    const int64 covered = columns[frame.columns.written - 1].End();
    const int64 read = std::min<int64>(covered, frame.columns.length) * Channels;
    HeapArray<float> sums;
    if (!sums.Allocate(covered * Channels)) return kNoMemory;
    const auto row = [&](int64 y) {
        return RegionRow(frame, Channels, static_cast<int32>(std::min<int64>(y, frame.rows.length - 1)));
    };
    const double scale = frame.columns.factor * frame.rows.factor;
    for (int32 i = 0; i < frame.rows.written; ++i) {
        const BoxSpan& span = rows[i];
        std::fill_n(sums.data(), read, 0.0f);
        if (span.head > 0.0) AddWeightedRow(row(span.first), read, span.head, sums.data());
        for (int64 y = span.FirstWhole(); y < span.Tail(); ++y) AddRow(row(y), read, sums.data());
        if (span.tail > 0.0) AddWeightedRow(row(span.Tail()), read, span.tail, sums.data());
        for (int64 x = read; x < covered * Channels; ++x) sums[x] = sums[x - Channels];
        AverageColumns<Channels>(sums.data(), columns.data(), frame.columns.written, scale,
                                 RowAt(frame.dst, frame.dstStep, i));
    }
    return kOk;
}

template int32 ResizeBoxAverage<1>(const ResizeFrame& frame);
template int32 ResizeBoxAverage<3>(const ResizeFrame& frame);

} // namespace orvane
