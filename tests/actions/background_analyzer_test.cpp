// What the background removal reads off a picture: sample points, and the planes of value and saturation.
#include "actions/background_analyzer.h"

#include "tests/reference/pixel.h"
#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/portrait.h"

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

TEST(ColourPlanes, HoldSaturationAndValueOfThePixels) {
    ImageBuffer source;
    test::MakeRandomPicture(source, 37, 21, 3, 1);
    BackgroundAnalyzer analyzer;
    ASSERT_TRUE(analyzer.SplitColours(source));
    for (int32 y = 0; y < 21; ++y) {
        for (int32 x = 0; x < 37; ++x) {
            const uint8* bgr = test::PixelAt(source, x, y);
            const test::reference::Pixel hsv = test::reference::Hsv({bgr[2], bgr[1], bgr[0]});
            ASSERT_EQ(+*test::PixelAt(analyzer.saturationPlane, x, y), hsv[1]) << x << ", " << y;
            ASSERT_EQ(+*test::PixelAt(analyzer.valuePlane, x, y), hsv[2]) << x << ", " << y;
        }
    }
}

TEST(ColourPlanes, AreMadeAnewForEachPicture) {
    ImageBuffer source;
    BackgroundAnalyzer analyzer;
    for (const ImageSize& size : {ImageSize{30, 20}, ImageSize{10, 40}, ImageSize{1, 1}}) {
        test::MakeRandomPicture(source, size.width, size.height, 3, 1);
        ASSERT_TRUE(analyzer.SplitColours(source));
        ASSERT_TRUE(analyzer.PrepareScratch(size.width, size.height));
        for (const ImageBuffer* plane : {&analyzer.valuePlane, &analyzer.saturationPlane, &analyzer.classPlane,
                                         &analyzer.scratchA, &analyzer.scratchB}) {
            EXPECT_EQ(plane->width, size.width);
            EXPECT_EQ(plane->height, size.height);
            EXPECT_EQ(plane->channels, 1);
        }
    }
}

TEST(ColourPlanes, WithoutMemoryAreRefused) {
    ImageBuffer source;
    test::MakeRandomPicture(source, 30, 20, 3, 1);
    for (int32 allowed = 0; allowed < 2; ++allowed) {
        BackgroundAnalyzer analyzer;
        const test::HeapLimit limit(allowed);
        EXPECT_FALSE(analyzer.SplitColours(source)) << allowed;
    }
    for (int32 allowed = 0; allowed < 3; ++allowed) {
        BackgroundAnalyzer analyzer;
        const test::HeapLimit limit(allowed);
        EXPECT_FALSE(analyzer.PrepareScratch(30, 20)) << allowed;
    }
}

} // namespace
} // namespace orvane
