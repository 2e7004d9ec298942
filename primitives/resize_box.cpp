// Box average: the mean of the source pixels that a result pixel covers. Weights are doubles; the
// sums are floats, rounded at every addition, rows first, then columns.
#include "primitives/heap_array.h"
#include "primitives/resize_frame.h"
#include "primitives/row_kernels.h"
#include "primitives/scaled_means_plan.h"

#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

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

/// The sums of some rows: `Add` collects them, `Write` adds them up.
class RowSums {
public:
    RowSums(const RowKernels& kernels, float* sums, int64 count) : kernels_(kernels), sums_(sums), width_(count) {}

    void Add(const uint8* row, double weight) {
        if (count_ == kMost) Write();
        rows_[count_++] = {row, weight};
    }

    void Write() {
        kernels_.boxRows(rows_, count_, goesOn_, sums_, width_);
        goesOn_ = true;
        count_ = 0;
    }

private:
    static constexpr int32 kMost = 16;

    const RowKernels& kernels_;
    float* sums_;
    int64 width_;
    WeightedRow rows_[kMost] = {};
    int32 count_ = 0;
    bool goesOn_ = false;
};

int32 MostLines(const BoxSpan* spans, int32 count) {
    int64 most = 0;
    for (int32 i = 0; i < count; ++i) most = std::max(most, spans[i].End() - spans[i].first);
    return static_cast<int32>(std::min<int64>(most, kMostBoxLines + 1));
}

/// The way of small boxes.
class SmallBoxes {
public:
    /// @param table of the columns
    SmallBoxes(const BoxSpan* table, const BoxSpan* rows, const ResizeFrame& frame)
        : means_{nullptr,
                 0,
                 0,
                 0,
                 nullptr,
                 table,
                 nullptr,
                 MostLines(table, frame.columns.written),
                 frame.columns.written,
                 frame.columns.factor * frame.rows.factor},
          rows_(MostLines(rows, frame.rows.written)) {}

    bool AreThese() const { return means_.taps + rows_ <= kMostBoxLines; }

    /// @param covered columns that any box has a part of, `read` of them in the region
    bool Allocate(int64 covered, int64 read) {
        const int64 pairs = (int64{means_.count} + 1) / 2;
        if (!sums_.Allocate((covered + kMostBoxLines) * 3 + 1) || !weights_.Allocate(2 * pairs * means_.taps)) {
            return false;
        }
        means_.columns = static_cast<int32>(read);
        means_.beyond = static_cast<int32>(covered - read);
        means_.sums = sums_.data();
        means_.weights = weights_.data();
        for (int32 j = 0; j < means_.count; ++j) {
            const BoxSpan& span = means_.spans[j];
            float* weights = &weights_[int64{j} / 2 * 2 * means_.taps + j % 2];
            if (span.head > 0.0) weights[0] = static_cast<float>(span.head);
            for (int64 x = span.FirstWhole(); x < span.Tail(); ++x) weights[2 * (x - span.first)] = 1.0F;
            if (span.tail > 0.0) weights[2 * (span.Tail() - span.first)] = static_cast<float>(span.tail);
        }
        return true;
    }

    template <typename RowAtY>
    void Write(const RowKernels& kernels, const BoxSpan& span, RowAtY row, uint8* to) {
        WeightedRow weighted[kMostBoxLines];
        means_.rows = weighted;
        means_.rowCount = 0;
        const auto add = [&](int64 y, double weight) { weighted[means_.rowCount++] = {row(y), weight}; };
        if (span.head > 0.0) add(span.first, span.head);
        for (int64 y = span.FirstWhole(); y < span.Tail(); ++y) add(y, 1.0);
        if (span.tail > 0.0) add(span.Tail(), span.tail);
        kernels.boxMeans3(means_, to);
    }

private:
    BoxMeans means_;
    int32 rows_;
    HeapArray<float> sums_, weights_;
};

/// The weight of the column k behind a box's first.
float WeightOf(const BoxSpan& span, int32 k) {
    if (k == 0 && span.head > 0.0) return static_cast<float>(span.head);
    const int64 column = span.first + k;
    if (column < span.Tail()) return 1.0F;
    return column == span.Tail() ? static_cast<float>(span.tail) : 0.0F;
}

/// The way of small boxes of which neighbours begin near each other.
template <int32 Channels>
class NearBoxes {
public:
    NearBoxes(const BoxSpan* columns, const BoxSpan* rows, const ResizeFrame& frame)
        : columns_(columns), rows_(rows), frame_(frame), taps_(MostLines(columns, frame.columns.written)),
          lines_(taps_ + MostLines(rows, frame.rows.written)) {}

    bool AreThese() const {
        return lines_ <= kMostBoxLines && ScaledMeansPlan::Fits(frame_.columns.written, FirstOf());
    }

    /// @param covered columns that any box has a part of, `read` of them in the region
    bool Allocate(int64 covered, int64 read) {
        // More than half of 2 r + 2 c + 2, see the kernel.
        plan_.SetDoubt(IsExact() ? 0 : lines_ + 2);
        return plan_.Fill(frame_.columns.written, Channels, taps_, read, covered - read, FirstOf(),
                          [this](int32 j, int32 k) { return WeightOf(columns_[j], k); });
    }

    template <typename RowAtY>
    void Write(const RowKernels& kernels, const BoxSpan& span, RowAtY row, uint8* to) {
        const double scale = frame_.columns.factor * frame_.rows.factor;
        WeightedRow rows[kMostBoxLines];
        float weights[kMostBoxLines];
        ScaledMeans& means = plan_.means;
        means.rows = rows;
        means.rowWeights = weights;
        means.rowCount = 0;
        const auto add = [&](int64 y, double weight) {
            weights[means.rowCount] = static_cast<float>(weight * scale);
            rows[means.rowCount++] = {row(y), weight};
        };
        if (span.head > 0.0) add(span.first, span.head);
        for (int64 y = span.FirstWhole(); y < span.Tail(); ++y) add(y, 1.0);
        if (span.tail > 0.0) add(span.Tail(), span.tail);
        (Channels == 3 ? kernels.nearBoxMeans3 : kernels.nearBoxMeans1)(means, columns_, scale, to);
    }

private:
    /// Whole pixels, of which floats hold all sums.
    bool IsExact() const {
        const auto areWhole = [](const BoxSpan* spans, int32 count) {
            return std::all_of(spans, spans + count,
                               [](const BoxSpan& s) { return (s.head == 0.0 || s.head == 1.0) && s.tail == 0.0; });
        };
        int exponent;
        return std::frexp(frame_.columns.factor * frame_.rows.factor, &exponent) == 0.5 &&
               areWhole(columns_, frame_.columns.written) && areWhole(rows_, frame_.rows.written);
    }

    auto FirstOf() const {
        return [columns = columns_](int32 j) { return static_cast<int32>(columns[j].first); };
    }

    const BoxSpan* columns_;
    const BoxSpan* rows_;
    const ResizeFrame& frame_;
    int32 taps_;
    int32 lines_; // columns and rows of a box
    ScaledMeansPlan plan_;
};

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
    const RowKernels& kernels = CurrentRowKernels();
    const auto row = [&](int64 y) {
        return RegionRow(frame, Channels, static_cast<int32>(std::min<int64>(y, frame.rows.length - 1)));
    };
    NearBoxes<Channels> near(columns.data(), rows.data(), frame);
    if (kernels.nearBoxMeans3 != nullptr && near.AreThese()) {
        if (!near.Allocate(covered, read / Channels)) return kNoMemory;
        for (int32 i = 0; i < frame.rows.written; ++i) {
            near.Write(kernels, rows[i], row, RowAt(frame.dst, frame.dstStep, i));
        }
        return kOk;
    }
    SmallBoxes boxes(columns.data(), rows.data(), frame);
    if (Channels == 3 && kernels.boxMeans3 != nullptr && boxes.AreThese()) {
        if (!boxes.Allocate(covered, read / Channels)) return kNoMemory;
        for (int32 i = 0; i < frame.rows.written; ++i) {
            boxes.Write(kernels, rows[i], row, RowAt(frame.dst, frame.dstStep, i));
        }
        return kOk;
    }
    HeapArray<float> sums;
    if (!sums.Allocate(covered * Channels + 1)) return kNoMemory;
    const double scale = frame.columns.factor * frame.rows.factor;
    for (int32 i = 0; i < frame.rows.written; ++i) {
        const BoxSpan& span = rows[i];
        RowSums rowSums(kernels, sums.data(), read);
        if (span.head > 0.0) rowSums.Add(row(span.first), span.head);
        for (int64 y = span.FirstWhole(); y < span.Tail(); ++y) rowSums.Add(row(y), 1.0);
        if (span.tail > 0.0) rowSums.Add(row(span.Tail()), span.tail);
        rowSums.Write();
        for (int64 x = read; x < covered * Channels; ++x) sums[x] = sums[x - Channels];
        const auto average = Channels == 3 ? kernels.boxColumns3 : kernels.boxColumns1;
        average(sums.data(), columns.data(), frame.columns.written, scale, RowAt(frame.dst, frame.dstStep, i));
    }
    return kOk;
}

template int32 ResizeBoxAverage<1>(const ResizeFrame& frame);
template int32 ResizeBoxAverage<3>(const ResizeFrame& frame);

} // namespace orvane
