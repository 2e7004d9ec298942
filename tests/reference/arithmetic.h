// Conversions and channel arithmetic once more, straight from their rules, one element at a time.
#pragma once

#include "primitives/types.h"

#include <cmath>

namespace orvane::test::reference {

/// A float as a byte: nearest whole number with a tie to even (roundMode 1), or truncated.
inline uint8 FloatToByte(float v, int32 roundMode) {
    if (std::isnan(v) || v <= 0) return 0;
    if (v >= 255) return 255;
    const double below = std::floor(static_cast<double>(v));
    if (roundMode != 1) return static_cast<uint8>(below);
    const double rest = v - below;
    const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2) == 1);
    return static_cast<uint8>(below + (up ? 1 : 0));
}

/// The limited difference v - value, scaled by 2^-s.
inline uint8 SubtractScaled(int32 v, int32 value, int32 s) {
    const int32 d = v - value < 1 ? 0 : v - value;
    if (s == 0) return static_cast<uint8>(d);
    if (s > 8) return 0;
    if (s == 1) return static_cast<uint8>((d + ((d >> 1) & 1)) >> 1);
    if (s > 0) return static_cast<uint8>((d + (1 << (s - 1)) - 1 + ((d >> s) & 1)) >> s);
    if (s < -7) return d > 0 ? 255 : 0;
    const int32 raised = d * (1 << -s);
    return static_cast<uint8>(raised > 255 ? 255 : raised);
}

} // namespace orvane::test::reference
