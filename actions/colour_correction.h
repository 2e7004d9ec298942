// Slot 2 of the pipeline: stretches the contrast, by the same amount in all channels.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

/// Makes `destination`, another image, the contrast-stretched form of `source`. Always 0.
int32 ActionColourCorrection(const ImageBuffer& source, ImageBuffer& destination);

/// The same in place, for a picture that nobody needs as it was.
void CorrectColours(ImageBuffer& image);

/// Looks for the levels between which a picture of three channels is stretched. A band of levels is
/// widened in steps of two, once from 254 downward and once from 1 upward, until in any channel it holds
/// `fraction` of the pixels of levels 1 to 254; the bound lies a step past the band that did. Levels 0 and
/// 255 count nowhere. A picture of any other form leaves `low` and `high` as they are.
/// @param high out, 247 down to -1
/// @param low  out, 4 up to 256; above `high` for a picture of few levels
/// Always 0; a picture without storage is told on standard output and has the bounds of one without levels.
int32 FindClipBounds(const ImageBuffer& image, float fraction, int32& low, int32& high);

/// Maps the levels from `low` to `high` onto 0 to 255, in place: level p becomes the nearest whole number
/// to max(p - low, 0) * 255 / (high - low), limited to 0..255, where the `low` that is subtracted is cut to
/// a byte. Equal bounds make every level above `low` 255, crossed ones make all of them 0. Only pictures of
/// three channels of 8 bits are changed. Always 0.
int32 StretchLevels(ImageBuffer& image, int32 low, int32 high);

} // namespace orvane
