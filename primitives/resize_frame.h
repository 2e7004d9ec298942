// What the interpolations of the resize primitives share: one call's checked geometry.
#pragma once

#include "primitives/types.h"

#include <algorithm>

namespace orvane {

/// One axis of a resize. The region's pixels are `origin` to `origin + length - 1` of `extent`. Of the result
/// `written` pixels are made, from number `skipped` on; positions are counted from number 0 all the same.
struct ResizeAxis {
    int32 extent;  // pixels of the whole source
    int32 origin;  // of the region
    int32 length;  // of the region, clipped to the source
    int32 written; // result pixels
    double factor; // result over source
    int32 skipped = 0;
};

/// One resize: `src` is the whole source's first pixel, `dst` the first one that is made.
struct ResizeFrame {
    const uint8* src;
    int32 srcStep;
    uint8* dst;
    int32 dstStep;
    ResizeAxis columns;
    ResizeAxis rows;
};

/// What is added before a position is cut to a whole number.
inline constexpr double kPositionNudge = 0.0000001;

/// First element of the region in its row `y`; rows outside of the region, but inside the source, too.
inline const uint8* RegionRow(const ResizeFrame& f, int32 channels, int32 y) {
    return RowAt(f.src, f.srcStep, f.rows.origin + y) + static_cast<std::ptrdiff_t>(f.columns.origin) * channels;
}

/// Distance of two samples on the grid whose first and last points are the region's.
inline double GridStep(const ResizeAxis& axis) {
    const double scaled = axis.length * axis.factor;
    return scaled > 1.0 ? (axis.length - 1) / (scaled - 1.0) : 0.0;
}

/// Positions are sums of steps: this one is that of the first pixel that is made.
inline double FirstOfSums(double first, double step, int32 skipped) {
    for (int32 i = 0; i < skipped; ++i) first += step;
    return first;
}

/// A position on that grid. On an axis of very many pixels the sum of the steps may end past the last one.
inline double GridPosition(double sum, const ResizeAxis& axis) {
    return std::min(sum, axis.length - 1.0 + kPositionNudge);
}

/// Whole part of a position, at most the region's last pixel.
inline int32 WholePosition(double position, int32 length) {
    return static_cast<int32>(std::min(position + kPositionNudge, length - 1.0));
}

/// Source pixels of an axis for nearest neighbour, from its beginning.
/// @param positions as many as `room`
/// How many are written; 0 when that is none.
int32 NearestPositions(int32 extent, double factor, int32 room, int32* positions);

// The interpolations, for 1 or 3 interleaved channels. 0, or no memory -9.
template <int32 Channels>
int32 ResizeLinear(const ResizeFrame& frame);
template <int32 Channels>
int32 ResizeCubic(const ResizeFrame& frame);
template <int32 Channels>
int32 ResizeBoxAverage(const ResizeFrame& frame);

} // namespace orvane
