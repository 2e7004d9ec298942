// Counting over a region: channel values in a range, histogram over even levels.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// counts[c] = the number of pixels whose channel c lies in lower[c] to upper[c], both included.
/// Status, in order of test: null pointer -8; step below 1 -14; a roi size below 1 -6; lower[c] above
/// upper[c] for any c -7.
int32 primCountInRange_8u_C3(const uint8* src, int32 srcStep, ImageSize roi, int32 counts[3], const uint8 lower[3],
                             const uint8 upper[3]);

/// Histogram over levelCount - 1 bins: bin k counts the values from levels[k] up to but excluding
/// levels[k + 1].
/// @param hist   out, levelCount - 1 entries
/// @param levels out, levelCount entries: lowerLevel to upperLevel in even whole steps, the first steps
///               one larger where the range does not divide
/// Status, in order of test: null pointer -8; a roi size below 1 -6; step below 1 -14; levelCount below
/// 2 -107.
int32 primHistogramEven_8u_C1(const uint8* src, int32 srcStep, ImageSize roi, int32* hist, int32* levels,
                              int32 levelCount, int32 lowerLevel, int32 upperLevel);

} // namespace generic
} // namespace orvane
