// The levels between which a picture's contrast is stretched.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

/// Looks for the levels between which a picture of three channels is stretched. A band of levels is
/// widened in steps of two, once from 254 downward and once from 1 upward, until in any channel it holds
/// `fraction` of the pixels of levels 1 to 254; the bound lies a step past the band that did. Levels 0 and
/// 255 count nowhere. A picture of any other form leaves `low` and `high` as they are.
/// @param high out, 247 down to -1
/// @param low  out, 4 up to 256; above `high` for a picture of few levels
/// Always 0; a picture without storage is told on standard output and has the bounds of one without levels.
int32 FindClipBounds(const ImageBuffer& image, float fraction, int32& low, int32& high);

} // namespace orvane
