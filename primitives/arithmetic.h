// Depth conversions and per-channel arithmetic of three-channel pictures. Steps in bytes; a float row
// may start at any byte.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// Each byte as a float, exactly.
/// Status, in order of test: null pointer -8; a roi size below 1 -6; a step below 1 -14.
int32 primConvert_8u32f_C3(const uint8* src, int32 srcStep, float* dst, int32 dstStep, ImageSize roi);

/// Each float as a byte, limited to 0..255; not a number gives 0. roundMode 1 rounds to nearest, a tie
/// to the even neighbour; any other mode truncates.
/// Status, in order of test: null pointer -8; a roi size below 1 -6; a step below 1 -14.
int32 primConvert_32f8u_C3(const float* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi, int32 roundMode);

/// Multiplies channel c by value[c], the product rounded to float. The step is not tested.
/// Status, in order of test: null pointer -8; a roi size below 1 -6.
int32 primMulC_32f_C3I(const float value[3], float* srcDst, int32 step, ImageSize roi);

/// Subtracts value[c] from channel c, limited to 0 below, and scales the difference by 2^-scaleFactor:
/// a positive factor divides, a tie to the even neighbour; a negative one multiplies, limited to 255.
/// The step is not tested. Status, in order of test: null pointer -8; a roi size below 1 -6.
int32 primSubC_8u_C3ISfs(const uint8 value[3], uint8* srcDst, int32 step, ImageSize roi, int32 scaleFactor);

} // namespace generic
} // namespace orvane
