// What the levels of some pixels tell: shares beyond a limit, and levels below which a share lies.
#pragma once

#include "tools/check/luminance.h"

#include <array>
#include <cstdint>

namespace orvane::tools {

/// A pixel at or below the one has lost its shadow's detail, at or above the other its highlight's.
inline constexpr int32 kLostShadow = 5;
inline constexpr int32 kBurntOut = 250;

/// Counts of pixels by level.
class LevelCounts {
public:
    void Add(const Luminance& plane);
    std::int64_t Pixels() const { return pixels_; }

    /// Percent of the pixels at or below a level, and at or above one; 0 without pixels.
    double PercentUpTo(int32 level) const;
    double PercentFrom(int32 level) const;

    /// The least level at or below which at least `percent` of the pixels lie; 0 without pixels.
    int32 Percentile(double percent) const;

private:
    std::array<std::int64_t, 256> counts_{};
    std::int64_t pixels_ = 0;
};

} // namespace orvane::tools
