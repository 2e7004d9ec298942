// Window filters in place. A ring keeps copies of the rows that the window covers, as they were before
// the call, so that a result may be written to its row at once.
#include "primitives/morphology.h"

#include "primitives/heap_array.h"

#include <algorithm>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

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
    explicit RowRing(const WindowedPlane& plane) : rowBytes_(plane.Reach()), rows_(plane.window.height) {}

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

void LowerRow(uint8* row, const uint8* candidates, int32 width) {
    for (int32 x = 0; x < width; ++x) row[x] = std::min(row[x], candidates[x]);
}

int32 Erode(const WindowedPlane& plane, const uint8* mask) {
    RowRing ring(plane);
    if (!ring.Allocate()) return kNoMemory;
    const auto reach = static_cast<std::size_t>(plane.Reach());
    const int32 rows = plane.window.height;
    for (int64 i = 0; i < rows - 1; ++i) std::memcpy(ring.Row(i), plane.SourceRow(i), reach);
    for (int32 y = 0; y < plane.roi.height; ++y) {
        const int64 entering = int64{y} + rows - 1;
        std::memcpy(ring.Row(entering), plane.SourceRow(entering), reach);
        uint8* result = RowAt(plane.first, plane.step, y);
        std::fill_n(result, plane.roi.width, uint8{255});
        for (int32 j = 0; j < rows; ++j) {
            const uint8* cells = RowAt(mask, plane.window.width, j);
            const uint8* source = ring.Row(int64{y} + j);
            for (int32 i = 0; i < plane.window.width; ++i) {
                if (cells[i] != 0) LowerRow(result, source + i, plane.roi.width);
            }
        }
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

// --- the box of three by three pixels, whose sums fit words ---

/// FixedPointMean of nine is a multiplication by 3641 and a shift by 15; with twice that factor the result is
/// the product's high word.
constexpr int32 kNinth = 7282;

#ifdef __SSE2__

__m128i LoadWords(const uint16* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); }

__m128i SumOfThree(__m128i a, __m128i b, __m128i c) { return _mm_add_epi16(_mm_add_epi16(a, b), c); }

/// How many columns were summed.
int64 SumColumnBlocks(const uint8* const (&rows)[3], uint16* sums, int64 count) {
    const __m128i zero = _mm_setzero_si128();
    int64 i = 0;
    for (; count - i >= 16; i += 16) {
        __m128i bytes[3];
        for (int32 k = 0; k < 3; ++k) bytes[k] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[k] + i));
        const __m128i low = SumOfThree(_mm_unpacklo_epi8(bytes[0], zero), _mm_unpacklo_epi8(bytes[1], zero),
                                       _mm_unpacklo_epi8(bytes[2], zero));
        const __m128i high = SumOfThree(_mm_unpackhi_epi8(bytes[0], zero), _mm_unpackhi_epi8(bytes[1], zero),
                                        _mm_unpackhi_epi8(bytes[2], zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(sums + i), low);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(sums + i + 8), high);
    }
    return i;
}

__m128i MeanOfEight(const uint16* sums) {
    return _mm_mulhi_epu16(SumOfThree(LoadWords(sums), LoadWords(sums + 1), LoadWords(sums + 2)),
                           _mm_set1_epi16(kNinth));
}

/// How many means were written.
int64 MeanBlocks(const uint16* sums, uint8* result, int64 count) {
    int64 i = 0;
    for (; count - i >= 16; i += 16) {
        const __m128i means = _mm_packus_epi16(MeanOfEight(sums + i), MeanOfEight(sums + i + 8));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(result + i), means);
    }
    return i;
}

#else

int64 SumColumnBlocks(const uint8* const (&)[3], uint16*, int64) { return 0; }
int64 MeanBlocks(const uint16*, uint8*, int64) { return 0; }

#endif

int32 FilterBox3x3(const WindowedPlane& plane) {
    RowRing ring(plane);
    HeapArray<uint16> sums;
    const int64 reach = plane.Reach();
    if (!ring.Allocate() || !sums.Allocate(reach)) return kNoMemory;
    const auto enter = [&](int64 row) {
        std::memcpy(ring.Row(row), plane.SourceRow(row), static_cast<std::size_t>(reach));
    };
    enter(0);
    enter(1);
    for (int64 y = 0; y < plane.roi.height; ++y) {
        enter(y + 2);
        const uint8* const rows[3] = {ring.Row(y), ring.Row(y + 1), ring.Row(y + 2)};
        for (int64 i = SumColumnBlocks(rows, sums.data(), reach); i < reach; ++i) {
            sums[i] = static_cast<uint16>(rows[0][i] + rows[1][i] + rows[2][i]);
        }
        uint8* result = RowAt(plane.first, plane.step, static_cast<int32>(y));
        for (int64 x = MeanBlocks(sums.data(), result, plane.roi.width); x < plane.roi.width; ++x) {
            result[x] = static_cast<uint8>((sums[x] + sums[x + 1] + sums[x + 2]) * kNinth >> 16);
        }
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
