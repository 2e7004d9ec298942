// A picture inside a larger one, with a frame of one value.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// Fills the destination region: `topBorderHeight` rows of `value`; then each source row with
/// `leftBorderWidth` values before it and values behind it up to the destination's width; then rows of
/// `value`. Source and destination must not overlap. Steps in bytes; a 16-bit row may start at any byte.
/// Status, in order of test: src or dst null -8; a step below 1 -14; a size below 1, a border below 0, or a
/// destination smaller than border and source together -6.
int32 primCopyConstBorder_8u_C1(const uint8* src, int32 srcStep, ImageSize srcRoi, uint8* dst, int32 dstStep,
                                ImageSize dstRoi, int32 topBorderHeight, int32 leftBorderWidth, uint8 value);
int32 primCopyConstBorder_16s_C1(const int16* src, int32 srcStep, ImageSize srcRoi, int16* dst, int32 dstStep,
                                 ImageSize dstRoi, int32 topBorderHeight, int32 leftBorderWidth, int16 value);

} // namespace generic
} // namespace orvane
