#include "tools/documents/cut_frame.h"

#include "primitives/primitives.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvane::tools {
namespace {

/// Columns or rows of the source that give `pixels` of the portrait.
struct Span {
    int64 start = 0;
    int64 length = 0;
};

Span SpanOf(double start, double length, int32 pixels, double factor) {
    Span span;
    span.start = static_cast<int64>(std::floor(start + 0.5));
    span.length = static_cast<int64>(std::ceil(length));
    while (static_cast<double>(span.length) * factor < pixels)
        ++span.length; // the scaling drops what is no whole pixel
    return span;
}

void FillPixels(uint8* to, int64 count, const uint8* pixel) {
    for (int64 x = 0; x < count; ++x) std::memcpy(to + 3 * x, pixel, 3);
}

/// One row of the cut: the row of the source between what stands to its left and right.
void CopyRow(const PictureRows& source, const uint8* row, const Span& columns, const uint8* colour, uint8* to) {
    const int64 left = std::clamp<int64>(-columns.start, 0, columns.length);
    const int64 right = std::clamp<int64>(source.width - columns.start, left, columns.length);
    FillPixels(to, left, colour != nullptr ? colour : row);
    if (right > left) {
        std::memcpy(to + 3 * left, row + 3 * (columns.start + left), static_cast<std::size_t>(3 * (right - left)));
    }
    const uint8* last = &row[3 * (static_cast<std::ptrdiff_t>(source.width) - 1)];
    FillPixels(to + 3 * right, columns.length - right, colour != nullptr ? colour : last);
}

} // namespace

bool CutFrame(const PictureRows& source, const PlaneRect& frame, int32 width, int32 height, const Fill& fill,
              Picture* portrait) {
    const double factor = height / frame.height;
    const double cutWidth = width / factor;
    const Span columns = SpanOf(frame.left + (frame.width - cutWidth) / 2, cutWidth, width, factor);
    const Span rows = SpanOf(source.height - frame.Bottom(), frame.height, height, factor);
    if (!IsPictureSizeAllowed(width, height) || columns.length * rows.length > kMaxPicturePixels) return false;

    const ImageSize size{static_cast<int32>(columns.length), static_cast<int32>(rows.length)};
    const int32 step = PictureStep(size.width);
    PixelBlock cut(PictureBytes(size.width, size.height));
    const uint8 given[3] = {fill.blue, fill.green, fill.red};
    const uint8* colour = fill.kind == Fill::Kind::colour ? given : nullptr;
    for (int64 y = 0; y < rows.length; ++y) {
        uint8* to = cut.data() + static_cast<std::ptrdiff_t>(step) * y;
        const int64 at = rows.start + y;
        const int64 nearest = std::clamp<int64>(at, 0, source.height - 1);
        if (colour != nullptr && at != nearest) {
            FillPixels(to, columns.length, colour);
        } else {
            CopyRow(source, source.bottom + static_cast<std::ptrdiff_t>(source.step) * nearest, columns, colour, to);
        }
    }
    portrait->width = width;
    portrait->height = height;
    portrait->step = PictureStep(width);
    portrait->pixels = PixelBlock(PictureBytes(width, height));
    const int32 interpolation = factor < 1 ? kBoxAverage : kCubic;
    return primResize_8u_C3(cut.data(), size, step, {0, 0, size.width, size.height}, portrait->pixels.data(),
                            portrait->step, {width, height}, factor, factor, interpolation) == kOk;
}

} // namespace orvane::tools
