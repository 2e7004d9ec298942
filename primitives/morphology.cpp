// Window filters in place. A ring keeps the rows that the window covers, as they were before the call, or what a
// window takes of each of them, so that a result may be written to its row at once.
#include "primitives/morphology.h"

#include "primitives/heap_array.h"
#include "primitives/row_kernels.h"

#include <algorithm>
#include <cstring>

namespace orvane::generic {
namespace {

/// The region, and the rows and columns that its windows reach.
struct WindowedPlane {
    uint8* first;
    int32 step;
    ImageSize roi;
    ImageSize window;
    ImagePoint anchor;

    /// Bytes of a source row: what the windows of one row of pixels cover.
    int64 Reach() const { return int64{roi.width} + window.width - 1; }

    /// Source row `i`, counted from the top of the first pixel's window.
    const uint8* SourceRow(int64 i) const {
        return first + static_cast<std::ptrdiff_t>((i - anchor.y) * step) - anchor.x;
    }
};

/// The last `window.height` source rows, zero where none has been put yet.
class RowRing {
public:
    /// @param more rows than a window has
    explicit RowRing(const WindowedPlane& plane, int32 more = 0)
        : rowBytes_(plane.Reach()), rows_(int64{plane.window.height} + more) {}

    bool Allocate() { return bytes_.Allocate(rowBytes_ * rows_); } // both below 2^32 and 2^31: no overflow

    /// Room of source row `i`; before row `i` is put there, it holds row `i` - window.height.
    uint8* Row(int64 i) { return bytes_.data() + i % rows_ * rowBytes_; }

private:
    HeapArray<uint8> bytes_;
    int64 rowBytes_;
    int64 rows_;
};

bool AnchorLiesOutside(ImageSize mask, ImagePoint anchor) {
    return anchor.x < 0 || anchor.y < 0 || anchor.x >= mask.width || anchor.y >= mask.height;
}

bool IsAllZero(const uint8* mask, ImageSize size) {
    for (int32 y = 0; y < size.height; ++y) {
        const uint8* row = RowAt(mask, size.width, y);
        if (std::any_of(row, row + size.width, [](uint8 cell) { return cell != 0; })) return false;
    }
    return true;
}

/// The smallest of the cells of some rows: `Add` collects where each begins.
class LowestOfRows {
public:
    LowestOfRows(const RowKernels& kernels, uint8* result, int64 width)
        : kernels_(kernels), result_(result), width_(width) {}

    void Add(const uint8* row) {
        if (count_ == kMost) Write();
        rows_[count_++] = row;
    }

    /// What was written before counts too.
    void Write() {
        kernels_.lowest(rows_, count_, result_, width_);
        rows_[0] = result_;
        count_ = 1;
    }

private:
    static constexpr int32 kMost = 16; // few, since each row of pixels begins with clearing them

    const RowKernels& kernels_;
    uint8* result_;
    int64 width_;
    const uint8* rows_[kMost] = {};
    int32 count_ = 0;
};

/// Of a full window the smallest of each row of it is found first, for all windows that share it. The ring holds those,
/// so no row is copied.
int32 ErodeFully(const WindowedPlane& plane) {
    RowRing ring(plane, 1);
    if (!ring.Allocate()) return kNoMemory;
    const RowKernels& kernels = CurrentRowKernels();
    const ImageSize window = plane.window;
    const auto enter = [&](int64 row) {
        LowestOfRows lowest(kernels, ring.Row(row), plane.roi.width);
        for (int32 i = 0; i < window.width; ++i) lowest.Add(plane.SourceRow(row) + i);
        lowest.Write();
    };
    for (int64 i = 0; i < window.height - 1; ++i) enter(i);
    int32 y = 0;
    if (window.height == 3 || window.height == 5) {
        for (; y + 1 < plane.roi.height; y += 2) {
            enter(int64{y} + window.height - 1);
            enter(int64{y} + window.height);
            const uint8* rows[6];
            for (int32 j = 0; j <= window.height; ++j) rows[j] = ring.Row(int64{y} + j);
            kernels.lowestOfTwo(rows, window.height, RowAt(plane.first, plane.step, y),
                                RowAt(plane.first, plane.step, y + 1), plane.roi.width);
        }
    }
    for (; y < plane.roi.height; ++y) {
        enter(int64{y} + window.height - 1);
        LowestOfRows lowest(kernels, RowAt(plane.first, plane.step, y), plane.roi.width);
        for (int32 j = 0; j < window.height; ++j) lowest.Add(ring.Row(int64{y} + j));
        lowest.Write();
    }
    return kOk;
}

int32 Erode(const WindowedPlane& plane, const uint8* mask) {
    const ImageSize window = plane.window;
    const int64 cells = int64{window.width} * window.height;
    if (std::find(mask, mask + cells, uint8{0}) == mask + cells) return ErodeFully(plane);
    RowRing ring(plane);
    const int64 reach = plane.Reach();
    if (!ring.Allocate()) return kNoMemory;
    const RowKernels& kernels = CurrentRowKernels();
    const auto enter = [&](int64 row) {
        std::memcpy(ring.Row(row), plane.SourceRow(row), static_cast<std::size_t>(reach));
    };
    for (int64 i = 0; i < window.height - 1; ++i) enter(i);
    for (int32 y = 0; y < plane.roi.height; ++y) {
        enter(int64{y} + window.height - 1);
        LowestOfRows lowest(kernels, RowAt(plane.first, plane.step, y), plane.roi.width);
        for (int32 j = 0; j < window.height; ++j) {
            const uint8* wanted = RowAt(mask, window.width, j);
            for (int32 i = 0; i < window.width; ++i) {
                if (wanted[i] != 0) lowest.Add(ring.Row(int64{y} + j) + i);
            }
        }
        lowest.Write();
    }
    return kOk;
}

/// Division by a window's area as multiplication and shift. With an area of at most 8100 the product
/// stays below 2^32.
class FixedPointMean {
public:
    explicit FixedPointMean(uint32 area) {
        const auto reciprocal = static_cast<float>(1.0 / area);
        if (reciprocal == 1.0f) return;
        constexpr double kTwo32 = 4294967296.0;
        auto scaled = static_cast<uint32>(reciprocal * kTwo32 + 0.000009);
        int32 doublings = 0;
        for (; scaled < 0x80000000u && doublings < 24; ++doublings) scaled <<= 1;
        multiplier_ = (scaled >> 20) + 1;
        shift_ = doublings + 12;
    }

    uint8 operator()(uint32 sum) const { return static_cast<uint8>(multiplier_ * sum >> shift_); }

private:
    uint32 multiplier_ = 256;
    int32 shift_ = 8;
};

constexpr int64 kLargestFixedPointArea = 8100;

/// Box mean with running sums: a column's sum over the window's rows, and a window's sum over columns.
template <typename Sum, typename Mean>
int32 FilterBox(const WindowedPlane& plane, Mean mean) {
    RowRing ring(plane);
    HeapArray<Sum> columns;
    const int64 reach = plane.Reach();
    if (!ring.Allocate() || !columns.Allocate(reach)) return kNoMemory;
    // The ring starts as zeros, so rows enter from the first on as if others were leaving.
    const auto enter = [&](int64 row) {
        const uint8* entering = plane.SourceRow(row);
        uint8* leaving = ring.Row(row);
        for (int64 i = 0; i < reach; ++i) columns[i] = columns[i] + entering[i] - leaving[i];
        std::memcpy(leaving, entering, static_cast<std::size_t>(reach));
    };
    for (int64 row = 0; row < plane.window.height - 1; ++row) enter(row);
    for (int32 y = 0; y < plane.roi.height; ++y) {
        enter(int64{y} + plane.window.height - 1);
        uint8* result = RowAt(plane.first, plane.step, y);
        const Sum* leaving = columns.data();
        const Sum* entering = leaving + (plane.window.width - 1);
        Sum sum = 0;
        for (const Sum* column = leaving; column != entering; ++column) sum += *column;
        for (int32 x = 0; x < plane.roi.width; ++x) {
            sum += entering[x];
            result[x] = mean(sum);
            sum -= leaving[x];
        }
    }
    return kOk;
}

/// The box of three by three pixels, whose sums fit words: those of a row are found once for all boxes that share them.
int32 FilterBox3x3(const WindowedPlane& plane) {
    const int64 width = plane.roi.width;
    HeapArray<uint16> ring;
    if (!ring.Allocate(3 * width)) return kNoMemory;
    const RowKernels& kernels = CurrentRowKernels();
    const auto sumsOf = [&](int64 row) { return ring.data() + row % 3 * width; };
    const auto enter = [&](int64 row) {
        const uint8* first = plane.SourceRow(row);
        const uint8* const columns[3] = {first, first + 1, first + 2};
        kernels.sumOfThree(columns, sumsOf(row), width);
    };
    enter(0);
    enter(1);
    for (int64 y = 0; y < plane.roi.height; ++y) {
        enter(y + 2);
        const uint16* const sums[3] = {sumsOf(y), sumsOf(y + 1), sumsOf(y + 2)};
        kernels.meanOfNine(sums, RowAt(plane.first, plane.step, static_cast<int32>(y)), width);
    }
    return kOk;
}

} // namespace

int32 primErode3x3_8u_C1I(uint8* srcDst, int32 step, ImageSize roi) {
    if (srcDst == nullptr) return kNullPointer;
    if (step < 1) return kStepTooSmall;
    if (!HasPixels(roi)) return kBadSize;
    const WindowedPlane plane{srcDst, step, roi, {3, 3}, {1, 1}};
    if (step < plane.Reach()) return kStepTooSmallForMask;
    constexpr uint8 kAllNine[9] = {1, 1, 1, 1, 1, 1, 1, 1, 1};
    return Erode(plane, kAllNine);
}

int32 primErode_8u_C1I(uint8* srcDst, int32 step, ImageSize roi, const uint8* mask, ImageSize maskSize,
                       ImagePoint anchor) {
    if (srcDst == nullptr || mask == nullptr) return kNullPointer;
    if (step < 1) return kStepTooSmall;
    if (!HasPixels(roi)) return kBadSize;
    if (!HasPixels(maskSize)) return kBadMaskSize;
    if (IsAllZero(mask, maskSize)) return kEmptyMask;
    if (AnchorLiesOutside(maskSize, anchor)) return kBadAnchor;
    const WindowedPlane plane{srcDst, step, roi, maskSize, anchor};
    if (step < plane.Reach()) return kStepTooSmallForMask;
    return Erode(plane, mask);
}

int32 primFilterBox_8u_C1I(uint8* srcDst, int32 step, ImageSize roi, ImageSize maskSize, ImagePoint anchor) {
    if (srcDst == nullptr) return kNullPointer;
    if (step < 1) return kStepTooSmall;
    if (!HasPixels(roi)) return kBadSize;
    if (!HasPixels(maskSize)) return kBadMaskSize;
    if (AnchorLiesOutside(maskSize, anchor)) return kBadAnchor;
    const WindowedPlane plane{srcDst, step, roi, maskSize, anchor};
    if (maskSize.width == 3 && maskSize.height == 3) return FilterBox3x3(plane);
    const int64 area = int64{maskSize.width} * maskSize.height;
    if (area <= kLargestFixedPointArea) return FilterBox<uint32>(plane, FixedPointMean(static_cast<uint32>(area)));
    return FilterBox<uint64>(plane, [area](uint64 sum) { return static_cast<uint8>(sum / static_cast<uint64>(area)); });
}

} // namespace orvane::generic
