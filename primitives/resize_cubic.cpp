// Cubic interpolation: the polynomial through four neighbours. A source row is interpolated once,
// into the slot of a ring of four that its number modulo four names.
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

inline double Polynomial(double s0, double s1, double s2, double s3, double a, double b, double c) {
    const double d1 = s1 - s0;
    const double d2 = (s2 - s1) - d1;
    const double d3 = (s1 - 2.0 * s2 + s3) - d2;
    return s0 + a * d1 + b * d2 + c * d3;
}

template <int32 Channels>
void InterpolateRow(const uint8* row, const CubicSample* samples, int32 count, float* out) {
    for (int32 j = 0; j < count; ++j, out += Channels) {
        const CubicSample& s = samples[j];
        const uint8* p = row + static_cast<std::ptrdiff_t>(s.first) * Channels;
        for (int32 c = 0; c < Channels; ++c) {
            out[c] = static_cast<float>(
                Polynomial(p[c], p[c + Channels], p[c + 2 * Channels], p[c + 3 * Channels], s.a, s.b, s.c));
        }
    }
}

void CombineRows(const float* s0, const float* s1, const float* s2, const float* s3, const CubicSample& sample,
                 uint8* out, int64 count) {
    const double a = sample.a;
    const double b = sample.b;
    const double c = static_cast<float>(sample.c);
    for (int64 x = 0; x < count; ++x) {
        const double v = Polynomial(s0[x], s1[x], s2[x], s3[x], a, b, c) + 0.5000001;
        out[x] = static_cast<uint8>(std::clamp(static_cast<int32>(v), 0, 255));
    }
}

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
        if (!line.Allocate(elements)) return kNoMemory;
    }
    int32 held[kRing] = {kNone, kNone, kNone, kNone}; // source rows, counted from the source's first
    for (int32 i = 0; i < frame.rows.written; ++i) {
        const float* lines[kRing];
        for (int32 k = 0; k < kRing; ++k) {
            const int32 y = frame.rows.origin + rows[i].first + k;
            const int32 slot = y % kRing;
            lines[k] = ring[slot].data();
            if (held[slot] == y) continue;
            held[slot] = y;
            InterpolateRow<Channels>(RegionRow(frame, Channels, rows[i].first + k), columns.data(),
                                     frame.columns.written, ring[slot].data());
        }
        CombineRows(lines[0], lines[1], lines[2], lines[3], rows[i], RowAt(frame.dst, frame.dstStep, i), elements);
    }
    return kOk;
}

template int32 ResizeCubic<1>(const ResizeFrame& frame);
template int32 ResizeCubic<3>(const ResizeFrame& frame);

} // namespace orvane
