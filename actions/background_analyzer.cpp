#include "actions/background_analyzer.h"

#include "primitives/saturation.h"
#include "primitives/trunc.h"

#include <algorithm>
#include <cstdlib>

namespace orvane {
namespace {

bool CreatePlane(ImageBuffer& plane, int32 width, int32 height) { return plane.Create(width, height, 1, kDepth8u, 0); }

} // namespace

bool BackgroundAnalyzer::PrepareScratch(int32 width, int32 height) {
    return CreatePlane(scratchA, width, height) && CreatePlane(scratchB, width, height) &&
           CreatePlane(classPlane, width, height);
}

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

bool BackgroundAnalyzer::SplitColours(const ImageBuffer& source) {
    const int32 width = source.width, height = source.height;
    if (!CreatePlane(valuePlane, width, height) || !CreatePlane(saturationPlane, width, height)) return false;
    SplitValueAndSaturation(source.data, source.Step(), valuePlane.data, saturationPlane.data, valuePlane.Step(),
                            source.Size());
    return true;
}

} // namespace orvane
