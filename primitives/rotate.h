// Rotation of a picture region, and the geometry that prepares one.
//
// Angles are in degrees; positions are pixel indices with y growing with the row in memory. The map of a
// rotation is x' = cos*x + sin*y + xShift, y' = -sin*x + cos*y + yShift. Cosine and sine of 90, 180 and 270
// degrees are exact; any others are the nearest doubles, the same on every system.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// Turns the region `srcRoi` of a source picture into `dstRoi` of a destination picture. Destination
/// pixels that the turned region does not reach keep their values.
/// @param src top left of the whole source, `srcSize` pixels; `srcRoi` is clipped to it; steps in bytes
/// @param dst top left of the whole destination
/// @param interpolation 1 nearest pixel, 2 linear, 4 as 2
/// By 90, 180 or 270 degrees and whole shifts pixels are copied, whatever the interpolation.
/// Status, in order of test: src or dst null -8; a size below 1 or an origin below 0 -6; a step below 1
/// -14; interpolation not valid -22; srcRoi outside the source, or copied pixels that all miss dstRoi, 29;
/// an angle that is not a finite number -56; clipped region under 2 pixels in a direction (not for
/// copied pixels) -57; no pixel lands in dstRoi 30.
int32 primRotate_8u_C1(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageRect dstRoi, double angle, double xShift, double yShift, int32 interpolation);

/// The same for three interleaved channels.
int32 primRotate_8u_C3(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst, int32 dstStep,
                       ImageRect dstRoi, double angle, double xShift, double yShift, int32 interpolation);

/// `primRotate_8u_C1` with the shift that keeps (xCenter, yCenter) in place.
int32 primRotateCenter_8u_C1(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst,
                             int32 dstStep, ImageRect dstRoi, double angle, double xCenter, double yCenter,
                             int32 interpolation);

/// The same for three interleaved channels.
int32 primRotateCenter_8u_C3(const uint8* src, ImageSize srcSize, int32 srcStep, ImageRect srcRoi, uint8* dst,
                             int32 dstStep, ImageRect dstRoi, double angle, double xCenter, double yCenter,
                             int32 interpolation);

/// The shift with which a rotation keeps (xCenter, yCenter) in place. Status: null pointer -8.
int32 primGetRotateShift(double xCenter, double yCenter, double angle, double* xShift, double* yShift);

/// Where the corner pixels of `srcRoi` go, as (x, y): top left, top right, bottom right, bottom left.
/// Status, in order of test: null pointer -8; an origin below 0 or a size below 1 -6.
int32 primGetRotateQuad(ImageRect srcRoi, double quad[4][2], double angle, double xShift, double yShift);

/// The smallest (x, y) and the largest (x, y) of that quad, each coordinate by itself. Status likewise.
int32 primGetRotateBound(ImageRect srcRoi, double bound[2][2], double angle, double xShift, double yShift);

} // namespace generic

/// Turns a whole picture of 1 or 3 channels by linear interpolation, but writes only a part of the destination:
/// the pixels that `primRotate_8u_C1` or `_C3` would write there, with their status for the whole, and 0 in place of
/// those that they would leave, which are all of them after a failure.
/// @param dst top left of the part
/// @param whole the destination's size; nothing of it is needed but the part
/// @param part inside the whole; without pixels nothing is written, and dst and its step play no part
int32 RotatePart(int32 channels, const uint8* src, ImageSize srcSize, int32 srcStep, uint8* dst, int32 dstStep,
                 ImageSize whole, ImageRect part, double angle, double xShift, double yShift);

} // namespace orvane
