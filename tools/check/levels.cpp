#include "tools/check/levels.h"

namespace orvane::tools {

void LevelCounts::Add(const Luminance& plane) {
    for (const uint8 level : plane.levels) ++counts_[level];
    pixels_ += static_cast<std::int64_t>(plane.levels.size());
}

double LevelCounts::PercentUpTo(int32 level) const {
    std::int64_t sum = 0;
    for (int32 i = 0; i <= level; ++i) sum += counts_[static_cast<std::size_t>(i)];
    return pixels_ > 0 ? 100.0 * static_cast<double>(sum) / static_cast<double>(pixels_) : 0;
}

double LevelCounts::PercentFrom(int32 level) const { return pixels_ > 0 ? 100.0 - PercentUpTo(level - 1) : 0; }

int32 LevelCounts::Percentile(double percent) const {
    std::int64_t sum = 0;
    for (int32 level = 0; level < 256 && pixels_ > 0; ++level) {
        sum += counts_[static_cast<std::size_t>(level)];
        if (100.0 * static_cast<double>(sum) >= percent * static_cast<double>(pixels_)) return level;
    }
    return 0;
}

} // namespace orvane::tools
