// Where the background removal looks for background.
#include "actions/background_analyzer.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace orvane {
namespace {

std::string Text(ImagePoint p) {
    std::ostringstream text;
    text << p.x << ", " << p.y;
    return text.str();
}

TEST(SamplePoints, RunUpTheLeftEdgeAlongTheTopAndDownTheRight) {
    BackgroundAnalyzer analyzer;
    analyzer.ComputeSamplePoints(300, 400);
    for (int32 i = 0; i < 15; ++i) {
        const auto at = static_cast<std::size_t>(i);
        EXPECT_EQ(Text(analyzer.samplePoints[at]), Text({1, 202 + 14 * i}));
        EXPECT_EQ(Text(analyzer.samplePoints[15 + at]), Text({1 + 21 * i, 399}));
        EXPECT_EQ(Text(analyzer.samplePoints[30 + at]), Text({298, 398 - 14 * i}));
    }
}

TEST(SamplePoints, OfAnOddHeightStartAtTheMiddleRoundedUp) {
    BackgroundAnalyzer analyzer;
    analyzer.ComputeSamplePoints(300, 401); // starts 199 rows below the top
    EXPECT_EQ(Text(analyzer.samplePoints[0]), Text({1, 202}));
    EXPECT_EQ(Text(analyzer.samplePoints[14]), Text({1, 202 + 14 * 14}));
}

TEST(SamplePoints, LieInEveryPictureOfSomeSize) {
    BackgroundAnalyzer analyzer;
    for (int32 width = 3; width < 120; ++width) {
        for (int32 height = 2; height < 120; ++height) {
            analyzer.ComputeSamplePoints(width, height);
            for (const ImagePoint& p : analyzer.samplePoints) {
                ASSERT_TRUE(p.x >= 0 && p.x < width && p.y >= 0 && p.y < height)
                    << Text(p) << " of " << width << " by " << height;
            }
        }
    }
}

TEST(SamplePoints, OfTheLeftEdgeAreKeptInTinyPicturesTheOthersAreNot) {
    BackgroundAnalyzer analyzer;
    analyzer.ComputeSamplePoints(1, 1);
    EXPECT_EQ(Text(analyzer.samplePoints[0]), Text({1, 0}));
    EXPECT_EQ(Text(analyzer.samplePoints[15]), Text({1, 0}));
    EXPECT_EQ(Text(analyzer.samplePoints[30]), Text({-1, -1}));
}

} // namespace
} // namespace orvane
