// Conversion from floating point to integer as the whole system does it: toward zero.
#pragma once

#include "primitives/types.h"

#include <limits>

namespace orvane {

/// `value` truncated toward zero; limited to the range of int32, 0 for not-a-number.
inline int32 TruncToInt32(double value) {
    if (value >= static_cast<double>(std::numeric_limits<int32>::max())) return std::numeric_limits<int32>::max();
    if (value > static_cast<double>(std::numeric_limits<int32>::min())) return static_cast<int32>(value);
    return value == value ? std::numeric_limits<int32>::min() : 0;
}

} // namespace orvane
