// Cubic interpolation: the polynomial through four neighbours.
#include "primitives/column_table.h"
#include "primitives/heap_array.h"
#include "primitives/resize_frame.h"
#include "primitives/scaled_means_plan.h"

namespace orvane {
namespace {

constexpr int32 kPoints = 4;

CubicPoint PointAt(double position, const ResizeAxis& axis) {
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

bool FillTable(const ResizeAxis& axis, HeapArray<CubicPoint>& table) {
    if (!table.Allocate(axis.written)) return false;
    const double step = GridStep(axis);
    double position = FirstOfSums(0.0, step, axis.skipped);
    for (int32 i = 0; i < axis.written; ++i, position += step) table[i] = PointAt(GridPosition(position, axis), axis);
    return true;
}

/// The same polynomial as weights of its pixels.
struct PixelWeights {
    float ofPixels[kPoints];
};

PixelWeights WeightsOf(const CubicPoint& p) {
    const auto narrow = [](double weight) { return static_cast<float>(weight); };
    return {{narrow(1.0 - p.a + p.b - p.c), narrow(p.a - 2.0 * p.b + 3.0 * p.c), narrow(p.b - 3.0 * p.c), narrow(p.c)}};
}

/// The point of a row, whose last weight is a float.
CubicPoint DownAt(const CubicPoint& row) { return {row.first, row.a, row.b, static_cast<float>(row.c)}; }

/// The way of vectors, which take rows before columns.
template <int32 Channels>
int32 ResizeInMeans(const ResizeFrame& frame, const CubicPoint* columns, const CubicPoint* rows) {
    constexpr int32 kDoubt = 12; // more than 2^-11.5
    const int32 count = frame.columns.written;
    const auto isBefore = [](const CubicPoint& a, const CubicPoint& b) { return a.first < b.first; };
    const auto [lowest, highest] = std::minmax_element(columns, columns + count, isBefore);
    const int32 first = lowest->first;
    ScaledMeansPlan plan;
    if (!plan.Fill(
            count, Channels, kPoints, int64{highest->first} - first + kPoints, 0,
            [&](int32 j) { return columns[j].first - first; },
            [&](int32 j, int32 k) { return WeightsOf(columns[j]).ofPixels[k]; })) {
        return kNoMemory;
    }
    plan.SetDoubt(kDoubt);
    plan.means.firstColumn = first;
    const RowKernels& kernels = CurrentRowKernels();
    const auto means = Channels == 3 ? kernels.cubicMeans3 : kernels.cubicMeans1;
    for (int32 i = 0; i < frame.rows.written; ++i) {
        const CubicPoint down = DownAt(rows[i]);
        const PixelWeights weights = WeightsOf(down);
        WeightedRow sources[kPoints] = {};
        for (int32 k = 0; k < kPoints; ++k) {
            sources[k].row = RegionRow(frame, Channels, down.first + k) + std::ptrdiff_t{Channels} * first;
        }
        plan.means.rows = sources;
        plan.means.rowWeights = weights.ofPixels;
        plan.means.rowCount = kPoints;
        means(plan.means, columns, down, RowAt(frame.dst, frame.dstStep, i));
    }
    return kOk;
}

/// The weights of each element, channel by channel.
class WeightTable {
public:
    bool Fill(const CubicPoint* points, int32 count, int32 channels) {
        const int64 elements = int64{count} * channels;
        if (!a_.Allocate(elements) || !b_.Allocate(elements) || !c_.Allocate(elements)) return false;
        for (int64 i = 0; i < elements; ++i) {
            const CubicPoint& point = points[i / channels];
            a_[i] = point.a;
            b_[i] = point.b;
            c_[i] = point.c;
        }
        return true;
    }

    CubicWeights Weights() const { return {a_.data(), b_.data(), c_.data()}; }

private:
    HeapArray<double> a_, b_, c_;
};

/// The plain way. A source row is interpolated once, into the slot of a ring of four that its number modulo four names.
template <int32 Channels>
int32 ResizeInLines(const ResizeFrame& frame, const CubicPoint* columns, const CubicPoint* rows) {
    constexpr int32 kRing = kPoints;
    constexpr int32 kNone = -1;
    const int64 elements = int64{frame.columns.written} * Channels;
    HeapArray<float> ring[kRing];
    for (HeapArray<float>& line : ring) {
        if (!line.Allocate(elements)) return kNoMemory;
    }
    WeightTable weights;
    ColumnTable table;
    const auto firstOf = [&columns](int32 j) { return columns[j].first; };
    if (!weights.Fill(columns, frame.columns.written, Channels) ||
        !table.Fill(frame.columns, Channels, kPoints, firstOf)) {
        return kNoMemory;
    }
    const RowKernels& kernels = CurrentRowKernels();
    int32 held[kRing] = {kNone, kNone, kNone, kNone}; // source rows, counted from the source's first
    for (int32 i = 0; i < frame.rows.written; ++i) {
        CubicRows between{{}, DownAt(rows[i])};
        for (int32 k = 0; k < kRing; ++k) {
            const int32 y = frame.rows.origin + rows[i].first + k;
            const int32 slot = y % kRing;
            between.lines[k] = ring[slot].data();
            if (held[slot] == y) continue;
            held[slot] = y;
            kernels.cubicColumns(RegionRow(frame, Channels, rows[i].first + k), table.Plan(), Channels,
                                 weights.Weights(), elements, ring[slot].data());
        }
        kernels.cubicRows(between, elements, RowAt(frame.dst, frame.dstStep, i));
    }
    return kOk;
}

} // namespace

template <int32 Channels>
int32 ResizeCubic(const ResizeFrame& frame) {
    HeapArray<CubicPoint> columns;
    HeapArray<CubicPoint> rows;
    if (!FillTable(frame.columns, columns) || !FillTable(frame.rows, rows)) return kNoMemory;
    const auto firstOf = [&columns](int32 j) { return columns[j].first; };
    const bool inMeans =
        CurrentRowKernels().cubicMeans3 != nullptr && ScaledMeansPlan::Fits(frame.columns.written, firstOf);
    return inMeans ? ResizeInMeans<Channels>(frame, columns.data(), rows.data())
                   : ResizeInLines<Channels>(frame, columns.data(), rows.data());
}

template int32 ResizeCubic<1>(const ResizeFrame& frame);
template int32 ResizeCubic<3>(const ResizeFrame& frame);

} // namespace orvane
