// Scaling of a picture region: nearest neighbour, linear, cubic and box average.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// A part of what primResize_8u_C3 makes of a whole picture, to the bit: of its result in a room of `dstSize`
/// pixels only the rectangle `part` is made, with its first pixel at `dst`. One factor serves both axes.
/// Status as there; a negative origin or no size of `part` -6, a part of which nothing would be written -201.
int32 ResizePart_8u_C3(const uint8* src, ImageSize srcSize, int32 srcStep, uint8* dst, int32 dstStep, ImageSize dstSize,
                       ImageRect part, double factor, int32 interpolation);

namespace generic {

/// Scales the region `srcRoi` of a source picture.
/// @param src     top left of the whole source, `srcSize` pixels; steps in bytes
/// @param dst     where the result's top left goes; at most `dstRoiSize` pixels are written
/// @param xFactor destination over source size, likewise `yFactor`
/// @param interpolation 1 nearest, 2 linear, 4 cubic (four-point polynomial; linear where the source is
///                under 4 pixels in a direction, nearest under 2), 8 box average (both factors at most 1)
/// The region is clipped to the source; trunc(width*factor + 1e-7) columns, likewise rows, are written.
/// Status, in order of test: src or dst null -8; a source or destination size below 1, a negative
/// region origin or a region size below 1 -6; a factor not above zero (or not a number) -23;
/// interpolation not valid -22; region outside the source 29; nothing to write -201; no memory -9.
int32 primResize_8u_C1(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageSize dstRoiSize, double xFactor, double yFactor, int32 interpolation);

/// The same for three interleaved channels.
int32 primResize_8u_C3(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageSize dstRoiSize, double xFactor, double yFactor, int32 interpolation);

} // namespace generic
} // namespace orvane
