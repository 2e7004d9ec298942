// Whether a profile says what sRGB says: many pictures carry one that does, and their pixels are to stay as they are.
#pragma once

#include "primitives/types.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace orvane::tools {

using ColourLevels = std::array<uint8, 3>;

/// Whether `transform` leaves colours all over the space where they are, but for the last digits in which profiles of
/// sRGB differ.
template <typename Transform>
bool KeepsColours(const Transform& transform) {
    constexpr int kNear = 2;
    constexpr int kSide = 9;
    const auto level = [](int step) { return static_cast<uint8>(std::min(step * 32, 255)); };
    for (int i = 0; i < kSide * kSide * kSide; ++i) {
        const ColourLevels from{level(i % kSide), level(i / kSide % kSide), level(i / (kSide * kSide))};
        const ColourLevels to = transform(from);
        for (std::size_t k = 0; k < from.size(); ++k) {
            if (std::abs(from[k] - to[k]) > kNear) return false;
        }
    }
    return true;
}

} // namespace orvane::tools
