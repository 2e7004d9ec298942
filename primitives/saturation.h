// Value and saturation of pixels, without the hue.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// Writes value and saturation of each pixel of three channels, in any order, to two planes: the third and the
/// second byte that `primRGBToHSV_8u_C3` gives. Steps in bytes, regions of one pixel at least; no tests are made.
void SplitValueAndSaturation(const uint8* src, int32 srcStep, uint8* values, uint8* saturations, int32 planeStep,
                             ImageSize roi);

} // namespace orvane
