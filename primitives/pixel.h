// Operations whose result at a pixel depends on that pixel alone: colour conversions.
// The channel that a name calls first is the first byte of the pixel in memory, whatever it holds.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// Grey plane of a picture: (1225*c0 + 2404*c1 + 467*c2) >> 12, c0 the pixel's first byte in memory.
/// The weights add up to 4096: white stays 255. Steps in bytes, not tested.
/// Status, in order of test: null pointer -8; a roi size below 1 -6.
int32 primRGBToGray_8u_C3C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi);

} // namespace generic
} // namespace orvane
