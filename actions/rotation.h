// Slot 3 of the pipeline: turns a picture, or the mask that belongs to it, by whole degrees.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

/// Turns `source` clockwise as a person sees it and keeps the angle in g_rotationAngle. A `source` without
/// storage leaves both that and `destination` as they are.
/// @param destination another image than `source`; it may lose its storage, see RotateFree
/// 0 when g_workImage has storage, whatever `source` is; else -60.
int32 ActionRotate(const ImageBuffer& source, ImageBuffer& destination, int32 angle);

/// Makes `result` the turned `source`: a copy for an angle of 0; pixels moved without change for 90, 180 and
/// 270, where rows or columns that none of them reaches stay 0, or at 180 degrees the source's; RotateFree
/// for every other angle, 360 and those below 0 too. One and three channels of 8 bits.
void RotateImage(const ImageBuffer& source, ImageBuffer& result, int32 angle);

/// Turns by linear interpolation and cuts the largest upright rectangle between the corners out, so that
/// the result is smaller than the source. Where nothing is left between the corners the result has no
/// storage; pixels of it that lie beyond the turned canvas are 0. A step that fails is told on standard
/// output.
void RotateFree(const ImageBuffer& source, ImageBuffer& result, int32 angle);

} // namespace orvane
