// Cubic interpolation: the polynomial through four neighbours. A source row is interpolated once,
// into the slot of a ring of four that its number modulo four names.
#include "primitives/column_table.h"
#include "primitives/heap_array.h"
#include "primitives/resize_frame.h"

namespace orvane {
namespace {

/// The four points from region pixel `first` on, and the weights of their differences.
struct CubicSample {
    int32 first;
    double a;
    double b;
    double c;
};

CubicSample SampleAt(double position, const ResizeAxis& axis) {
    int32 whole = WholePosition(position, axis.length);
    const int32 absolute = axis.origin + whole;
    double t = 2.0;
    if (absolute == axis.extent - 1) {
        whole -= 2;
    } else {
        if (absolute == 0) {
            whole += 1;
        } else if (absolute == axis.extent - 2) {
            whole -= 1;
        }
        t = static_cast<float>(position - whole);
    }
    const double a = 1.0 + t;
    const double b = t * a / 2.0;
    return {whole - 1, a, b, (t - 1.0) * b / 3.0};
}

bool FillTable(const ResizeAxis& axis, HeapArray<CubicSample>& table) {
    if (!table.Allocate(axis.written)) return false;
    const double step = GridStep(axis);
    double position = FirstOfSums(0.0, step, axis.skipped);
    for (int32 i = 0; i < axis.written; ++i, position += step) table[i] = SampleAt(GridPosition(position, axis), axis);
    return true;
}

/// The same polynomial as weights of its points.
struct PointWeights {
    float points[4];
};

PointWeights WeightsOfPoints(double a, double b, double c) {
    const auto narrow = [](double weight) { return static_cast<float>(weight); };
    return {{narrow(1.0 - a + b - c), narrow(a - 2.0 * b + 3.0 * c), narrow(b - 3.0 * c), narrow(c)}};
}

/// The weights of each element, channel by channel.
class WeightTable {
public:
    bool Fill(const CubicSample* samples, int32 count, int32 channels) {
        const int64 elements = int64{count} * channels;
        constexpr int64 kBlock = kColumnBlock;
        const int64 places = (elements + kBlock - 1) / kBlock * kBlock;
        if (!a_.Allocate(elements) || !b_.Allocate(elements) || !c_.Allocate(elements)) return false;
        if (!ofPixels_.Allocate(4 * places)) return false;
        for (int64 i = 0; i < elements; ++i) {
            const CubicSample& sample = samples[i / channels];
            a_[i] = sample.a;
            b_[i] = sample.b;
            c_[i] = sample.c;
            const PointWeights weights = WeightsOfPoints(sample.a, sample.b, sample.c);
            for (int64 k = 0; k < 4; ++k) ofPixels_[(i / kBlock * 4 + k) * kBlock + i % kBlock] = weights.points[k];
        }
        return true;
    }

    CubicWeights Weights() const { return {a_.data(), b_.data(), c_.data(), ofPixels_.data()}; }

private:
    HeapArray<double> a_, b_, c_;
    HeapArray<float> ofPixels_;
};

} // namespace

template <int32 Channels>
int32 ResizeCubic(const ResizeFrame& frame) {
    constexpr int32 kRing = 4;
    constexpr int32 kNone = -1;
    HeapArray<CubicSample> columns;
    HeapArray<CubicSample> rows;
    HeapArray<float> ring[kRing];
    const int64 elements = int64{frame.columns.written} * Channels;
    if (!FillTable(frame.columns, columns) || !FillTable(frame.rows, rows)) return kNoMemory;
    for (HeapArray<float>& line : ring) {
        if (!line.Allocate(elements + kColumnBlock)) return kNoMemory;
    }
    WeightTable weights;
    ColumnTable table;
    const auto firstOf = [&columns](int32 j) { return columns[j].first; };
    if (!weights.Fill(columns.data(), frame.columns.written, Channels) ||
        !table.Fill(frame.columns, Channels, kRing, firstOf)) {
        return kNoMemory;
    }
    const RowKernels& kernels = CurrentRowKernels();
    int32 held[kRing] = {kNone, kNone, kNone, kNone}; // source rows, counted from the source's first
    for (int32 i = 0; i < frame.rows.written; ++i) {
        const double c = static_cast<float>(rows[i].c);
        CubicRows between{{}, {}, rows[i].a, rows[i].b, c, {}};
        const PointWeights ofLines = WeightsOfPoints(between.a, between.b, between.c);
        for (int32 k = 0; k < kRing; ++k) {
            const int32 y = frame.rows.origin + rows[i].first + k;
            const int32 slot = y % kRing;
            between.lines[k] = ring[slot].data();
            between.sources[k] = RegionRow(frame, Channels, rows[i].first + k);
            between.ofLines[k] = ofLines.points[k];
            if (held[slot] == y) continue;
            held[slot] = y;
            kernels.cubicColumns(between.sources[k], table.Plan(), Channels, weights.Weights(), elements,
                                 ring[slot].data());
        }
        kernels.cubicRows(between, table.Plan(), Channels, weights.Weights(), elements,
                          RowAt(frame.dst, frame.dstStep, i));
    }
    return kOk;
}

template int32 ResizeCubic<1>(const ResizeFrame& frame);
template int32 ResizeCubic<3>(const ResizeFrame& frame);

} // namespace orvane
