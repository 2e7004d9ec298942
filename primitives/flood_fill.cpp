// Flood fill by spans: a span is a longest run of the old value in a row. It is filled when it is found
// and then waits on a stack until its two neighbouring rows are searched.
//
// The stack fits into the caller's buffer whatever the picture. Each span is found once, since it is
// filled then, and lies at least one pixel from the next of its row: a row has at most (w + 1)/2 spans.
// At 8 bytes a span that makes 4*w*h + 4*h bytes. The buffer has 6*w*h + 25 once it is aligned, which is
// as much or more from w = 2 on; in a single column no more than two spans ever wait.
#include "primitives/flood_fill.h"

#include <algorithm>
#include <limits>
#ifdef __SSE2__
#include <bit>
#include <emmintrin.h>
#endif

namespace orvane::generic {
namespace {

/// A filled span: its first pixel, counted row after row through the region, and its length.
struct Span {
    uint32 first;
    uint32 length;
};

#ifdef __SSE2__

constexpr uint32 kSixteen = 0xFFFF;

/// One bit for each of sixteen pixels that holds the value.
uint32 Hits(const uint8* pixels, uint8 value) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
    return static_cast<uint32>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(value)))));
}

#endif

/// The first of the columns from `x` up to but excluding `end` whose pixel holds the value, or does not; `end`
/// when there is none.
template <bool Holds>
int32 FindRightwards(const uint8* row, int32 x, int32 end, uint8 value) {
#ifdef __SSE2__
    for (; end - x >= 16; x += 16) {
        const uint32 found = Hits(row + x, value) ^ (Holds ? 0 : kSixteen);
        if (found != 0) return x + std::countr_zero(found);
    }
#endif
    while (x < end && (row[x] == value) != Holds) ++x;
    return x;
}

/// The first column of the run of the value that ends before column `x`; `x` when there is none.
int32 FindStartOfRun(const uint8* row, int32 x, uint8 value) {
#ifdef __SSE2__
    for (; x >= 16; x -= 16) {
        const uint32 others = Hits(row + x - 16, value) ^ kSixteen;
        if (others != 0) return x - 16 + std::bit_width(others);
    }
#endif
    while (x > 0 && row[x - 1] == value) --x;
    return x;
}

class Filler {
public:
    Filler(uint8* image, int32 step, ImageSize roi, uint8 oldValue, uint8 newValue, Span* stack)
        : image_(image), step_(step), roi_(roi), oldValue_(oldValue), newValue_(newValue), stack_(stack) {}

    /// `reach` is how far beyond its ends a span touches the spans of the next row: 0 or 1.
    void Run(ImagePoint seed, int32 reach) {
        TakeSpanAt(seed.x, seed.y);
        while (waiting_ > 0) {
            const Span span = stack_[--waiting_];
            const auto width = static_cast<uint32>(roi_.width);
            const auto y = static_cast<int32>(span.first / width);
            const auto left = static_cast<int32>(span.first % width);
            const int32 from = std::max(left - reach, 0);
            const int32 to = std::min(left + static_cast<int32>(span.length) - 1 + reach, roi_.width - 1);
            if (y > 0) SearchRow(y - 1, from, to);
            if (y < roi_.height - 1) SearchRow(y + 1, from, to);
        }
    }

    ConnectedRegion Result() const {
        return {
            area_, {static_cast<double>(newValue_), 0.0, 0.0}, {left_, top_, right_ - left_ + 1, bottom_ - top_ + 1}};
    }

private:
    void SearchRow(int32 y, int32 from, int32 to) {
        const uint8* row = RowAt(image_, step_, y);
        int32 x = from;
        while ((x = FindRightwards<true>(row, x, to + 1, oldValue_)) <= to) x = TakeSpanAt(x, y) + 1;
    }

    /// Fills, counts and stacks the span around (x, y); its last column.
    int32 TakeSpanAt(int32 x, int32 y) {
        uint8* row = RowAt(image_, step_, y);
        const int32 left = FindStartOfRun(row, x, oldValue_);
        const int32 right = FindRightwards<false>(row, x + 1, roi_.width, oldValue_) - 1;
        const int32 length = right - left + 1;
        std::fill_n(row + left, length, newValue_);
        area_ += length;
        left_ = std::min(left_, left);
        right_ = std::max(right_, right);
        top_ = std::min(top_, y);
        bottom_ = std::max(bottom_, y);
        const uint32 first = static_cast<uint32>(y) * static_cast<uint32>(roi_.width) + static_cast<uint32>(left);
        stack_[waiting_++] = {first, static_cast<uint32>(length)};
        return right;
    }

    uint8* image_;
    int32 step_;
    ImageSize roi_;
    uint8 oldValue_, newValue_;
    Span* stack_;
    std::size_t waiting_ = 0;
    double area_ = 0.0;
    int32 left_ = std::numeric_limits<int32>::max(), right_ = -1;
    int32 top_ = std::numeric_limits<int32>::max(), bottom_ = -1;
};

int32 BufferSize(ImageSize roi) {
    // For the largest sizes the product wraps in 64 bits; its low 32 bits, which are wanted, stay right.
    const uint64 bytes = 6 * (static_cast<uint64>(roi.width) * static_cast<uint64>(roi.height)) + 32;
    return static_cast<int32>(static_cast<uint32>(bytes));
}

bool BufferSizeFits(ImageSize roi) {
    constexpr int64 kMostPixels = (int64{std::numeric_limits<int32>::max()} - 32) / 6;
    return int64{roi.width} * roi.height <= kMostPixels;
}

int32 FloodFill(uint8* image, int32 step, ImageSize roi, ImagePoint seed, uint8 newValue, ConnectedRegion* region,
                uint8* buffer, int32 reach) {
    if (image == nullptr || region == nullptr || buffer == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (step < roi.width) return kStepTooSmall;
    if (seed.x < 0 || seed.y < 0 || seed.x >= roi.width || seed.y >= roi.height) return kSeedOutside;
    if (!BufferSizeFits(roi)) return kNoMemory;
    const uint8 oldValue = RowAt(image, step, seed.y)[seed.x];
    if (oldValue == newValue) return kOk;
    const std::uintptr_t misaligned = reinterpret_cast<std::uintptr_t>(buffer) % alignof(uint64);
    auto* stack = reinterpret_cast<Span*>(misaligned == 0 ? buffer : buffer + (sizeof(uint64) - misaligned));
    Filler filler(image, step, roi, oldValue, newValue, stack);
    filler.Run(seed, reach);
    *region = filler.Result();
    return kOk;
}

} // namespace

int32 primFloodFill4_8u_C1I(uint8* image, int32 step, ImageSize roi, ImagePoint seed, uint8 newValue,
                            ConnectedRegion* region, uint8* buffer) {
    return FloodFill(image, step, roi, seed, newValue, region, buffer, 0);
}

int32 primFloodFill8_8u_C1I(uint8* image, int32 step, ImageSize roi, ImagePoint seed, uint8 newValue,
                            ConnectedRegion* region, uint8* buffer) {
    return FloodFill(image, step, roi, seed, newValue, region, buffer, 1);
}

int32 primFloodFillGetSize(ImageSize roi, int32* size) {
    if (size == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    *size = BufferSize(roi);
    return kOk;
}

} // namespace orvane::generic
