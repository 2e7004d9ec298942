#include "actions/background_analyzer.h"

#include "primitives/trunc.h"

#include <algorithm>
#include <cstdlib>

namespace orvane {
void BackgroundAnalyzer::ComputeSamplePoints(int32 width, int32 height) {
    const int32 start = -2 - TruncToInt32((height + 1.0) * -0.5);
    const int32 stepX = std::abs(3 - width) / (kPointsPerSide - 1);
    const int32 stepY = std::abs(2 - start) / (kPointsPerSide - 1);
    for (int32 i = 0; i < kPointsPerSide; ++i) {
        const int32 leftY = height - std::max(start - i * stepY, 0);
        const auto at = static_cast<std::size_t>(i);
        samplePoints[at] = {1, std::min(std::max(leftY, 1), height - 1)};
        samplePoints[at + kPointsPerSide] = {1 + i * stepX, height - 1};
        samplePoints[at + std::size_t{2} * kPointsPerSide] = {width - 2, height - (2 + i * stepY)};
    }
}

} // namespace orvane
