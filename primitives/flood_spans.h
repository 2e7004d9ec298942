// Flood fill by spans: a span is a longest run of the old value in a row. It is filled when it is found
// and then waits on a stack until its two neighbouring rows are searched.
//
// The stack fits into the caller's buffer whatever the picture. Each span is found once, since it is
// filled then, and lies at least one pixel from the next of its row: a row has at most (w + 1)/2 spans.
// At 8 bytes a span that makes 4*w*h + 4*h bytes. The buffer has 6*w*h + 25 once it is aligned, which is
// as much or more from w = 2 on; in a single column no more than two spans ever wait.
#pragma once

#include "primitives/flood_fill.h"

#include <algorithm>
#include <limits>

namespace orvane {

/// A filled span: its first pixel, counted row after row through the region, and its length.
struct FloodSpan {
    uint32 first;
    uint32 length;
};

class SpanFiller {
public:
    SpanFiller(uint8* image, int32 step, ImageSize roi, uint8 oldValue, uint8 newValue, void* block)
        : image_(image), step_(step), roi_(roi), oldValue_(oldValue), newValue_(newValue),
          stack_(static_cast<FloodSpan*>(block)) {}

    /// `reach` is how far beyond its ends a span touches the spans of the next row: 0 or 1.
    void Run(ImagePoint seed, int32 reach) {
        TakeSpanAt(seed.x, seed.y);
        while (waiting_ > 0) {
            const FloodSpan span = stack_[--waiting_];
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
        for (int32 x = from; x <= to; ++x) {
            if (row[x] == oldValue_) x = TakeSpanAt(x, y);
        }
    }

    /// Fills, counts and stacks the span around (x, y); its last column.
    int32 TakeSpanAt(int32 x, int32 y) {
        uint8* row = RowAt(image_, step_, y);
        int32 left = x, right = x;
        while (left > 0 && row[left - 1] == oldValue_) --left;
        while (right < roi_.width - 1 && row[right + 1] == oldValue_) ++right;
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
    FloodSpan* stack_;
    std::size_t waiting_ = 0;
    double area_ = 0.0;
    int32 left_ = std::numeric_limits<int32>::max(), right_ = -1;
    int32 top_ = std::numeric_limits<int32>::max(), bottom_ = -1;
};

} // namespace orvane
