// The resize entries: checks and geometry, and nearest neighbour. The other interpolations have files of
// their own. Every position is found once for a row or column, never for a pixel.
#include "primitives/resize.h"

#include "primitives/heap_array.h"
#include "primitives/resize_frame.h"

#include <cmath>
#include <cstring>

namespace orvane {
namespace {

/// Positions are sums of steps. Rounding, or a factor that leaves less than one pixel, may lead past the
/// region: then its last pixel stands.
void FillPositions(const ResizeAxis& axis, int32* positions) {
    const double step = 1.0 / axis.factor;
    double position = FirstOfSums(0.5 * step, step, axis.skipped);
    for (int32 i = 0; i < axis.written; ++i, position += step) positions[i] = WholePosition(position, axis.length);
}

bool FillNearestTable(const ResizeAxis& axis, HeapArray<int32>& table) {
    if (!table.Allocate(axis.written)) return false;
    FillPositions(axis, table.data());
    return true;
}

template <int32 Channels>
int32 ResizeNearest(const ResizeFrame& frame) {
    HeapArray<int32> rows;
    HeapArray<int32> columns;
    if (!FillNearestTable(frame.rows, rows) || !FillNearestTable(frame.columns, columns)) return kNoMemory;
    const int32* column = columns.data();
    for (int32 i = 0; i < frame.rows.written; ++i) {
        const uint8* from = RegionRow(frame, Channels, rows[i]);
        uint8* to = RowAt(frame.dst, frame.dstStep, i);
        for (int32 j = 0; j < frame.columns.written; ++j, to += Channels) {
            std::memcpy(to, from + static_cast<std::ptrdiff_t>(column[j]) * Channels, Channels);
        }
    }
    return kOk;
}

/// Clips the region of an axis and finds how much is written: at most `room`. 0 when nothing is.
int32 SizeAxis(ResizeAxis& axis, int32 room) {
    axis.length = std::min(axis.length, axis.extent - axis.origin);
    const double scaled = axis.length * axis.factor + kPositionNudge;
    if (scaled >= room) {
        axis.written = room;
    } else if (scaled < 1.0) {
        axis.written = scaled >= 0.5 ? 1 : 0;
    } else {
        axis.written = static_cast<int32>(scaled);
    }
    return axis.written;
}

/// Leaves of what an axis writes only the pixels from `first` on, at most `count`. False when none is left.
bool KeepPart(ResizeAxis& axis, int32 first, int32 count) {
    axis.skipped = first;
    axis.written = std::min(axis.written - first, count);
    return axis.written > 0;
}

bool IsUsableFactor(double factor) { return factor > 0.0 && std::isfinite(factor); }

bool IsValid(int32 interpolation, double xFactor, double yFactor) {
    switch (interpolation) {
    case kNearest:
    case kLinear:
    case kCubic:
        return true;
    case kBoxAverage:
        return xFactor <= 1.0 && yFactor <= 1.0;
    default:
        return false;
    }
}

/// The polynomials need as many source pixels as they have points.
int32 Affordable(int32 interpolation, ImageSize src) {
    const int32 side = std::min(src.width, src.height);
    if (interpolation == kCubic && side < 4) interpolation = kLinear;
    if (interpolation == kLinear && side < 2) interpolation = kNearest;
    return interpolation;
}

template <int32 Channels>
int32 Resize(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
             ImageSize dstRoiSize, double xFactor, double yFactor, int32 interpolation,
             const ImageRect* part = nullptr) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(srcSize) || !HasPixels(dstRoiSize)) return kBadSize;
    if (srcRoi.x < 0 || srcRoi.y < 0 || srcRoi.width < 1 || srcRoi.height < 1) return kBadSize;
    if (!IsUsableFactor(xFactor) || !IsUsableFactor(yFactor)) return kBadFactor;
    if (!IsValid(interpolation, xFactor, yFactor)) return kBadInterpolation;
    if (srcRoi.x >= srcSize.width || srcRoi.y >= srcSize.height) return kNoIntersection;

    ResizeFrame frame = {src,
                         srcStep,
                         dst,
                         dstStep,
                         {srcSize.width, srcRoi.x, srcRoi.width, 0, xFactor},
                         {srcSize.height, srcRoi.y, srcRoi.height, 0, yFactor}};
    if (SizeAxis(frame.columns, dstRoiSize.width) < 1 || SizeAxis(frame.rows, dstRoiSize.height) < 1) {
        return kNothingToWrite;
    }
    if (part != nullptr &&
        (!KeepPart(frame.columns, part->x, part->width) || !KeepPart(frame.rows, part->y, part->height))) {
        return kNothingToWrite;
    }
    switch (Affordable(interpolation, srcSize)) {
    case kLinear:
        return ResizeLinear<Channels>(frame);
    case kCubic:
        return ResizeCubic<Channels>(frame);
    case kBoxAverage:
        return ResizeBoxAverage<Channels>(frame);
    default:
        return ResizeNearest<Channels>(frame);
    }
}

} // namespace

int32 NearestPositions(int32 extent, double factor, int32 room, int32* positions) {
    ResizeAxis axis{extent, 0, extent, 0, factor};
    if (SizeAxis(axis, room) > 0) FillPositions(axis, positions);
    return axis.written;
}

int32 ResizePart_8u_C3(const uint8* src, ImageSize srcSize, int32 srcStep, uint8* dst, int32 dstStep, ImageSize dstSize,
                       ImageRect part, double factor, int32 interpolation) {
    if (part.x < 0 || part.y < 0 || part.width < 1 || part.height < 1) return kBadSize;
    return Resize<3>(src, srcSize, srcStep, {0, 0, srcSize.width, srcSize.height}, dst, dstStep, dstSize, factor,
                     factor, interpolation, &part);
}

namespace generic {

int32 primResize_8u_C1(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageSize dstRoiSize, double xFactor, double yFactor, int32 interpolation) {
    return Resize<1>(src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoiSize, xFactor, yFactor, interpolation);
}

int32 primResize_8u_C3(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageSize dstRoiSize, double xFactor, double yFactor, int32 interpolation) {
    return Resize<3>(src, srcSize, srcStep, srcRoi, dst, dstStep, dstRoiSize, xFactor, yFactor, interpolation);
}

} // namespace generic
} // namespace orvane
