// Filters in place whose result is taken from a window around each pixel: the smallest value, the mean.
//
// A window's top left lies at (x - anchor.x, y - anchor.y). It may reach beyond the region: the caller
// provides the pixels around the region in the same buffer; they are read and never changed. All values
// are those before the call. Steps in bytes.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// Each pixel becomes the smallest of the nine pixels around and including it.
/// Status, in order of test: null pointer -8; step below 1 -14; a roi size below 1 -6; step below
/// width + 2 -37; no memory -9.
int32 primErode3x3_8u_C1I(uint8* srcDst, int32 step, ImageSize roi);

/// Each pixel becomes the smallest of those pixels of its window whose mask byte is not 0.
/// @param mask maskSize.width by maskSize.height bytes, row after row without padding
/// Status, in order of test: null pointer -8; step below 1 -14; a roi size below 1 -6; a mask size below
/// 1 -33; a mask of all zeros -59; anchor outside the mask -34; step below width + mask width - 1 -37;
/// no memory -9.
int32 primErode_8u_C1I(uint8* srcDst, int32 step, ImageSize roi, const uint8* mask, ImageSize maskSize,
                       ImagePoint anchor);

/// Each pixel becomes the mean of its window, truncated; a flat plane stays as it is. For windows of up
/// to 8100 pixels the division is a fixed-point multiplication by a factor up to 1/2048 too large, so that
/// a mean that close below a whole number becomes that number; for larger ones it is exact.
/// Status, in order of test: null pointer -8; step below 1 -14; a roi size below 1 -6; a mask size below
/// 1 -33; anchor outside the mask -34; no memory -9.
int32 primFilterBox_8u_C1I(uint8* srcDst, int32 step, ImageSize roi, ImageSize maskSize, ImagePoint anchor);

} // namespace generic
} // namespace orvane
