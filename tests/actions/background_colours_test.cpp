// The bands of background colours, over a plane that holds every pair of value and saturation.
#include "actions/background_colours.h"

#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/portrait.h"
#include "tests/support/printed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace orvane {
namespace {

/// Row v of the planes has value v, column s saturation s.
class ColourBands : public ::testing::Test {
protected:
    ColourBands() {
        EXPECT_TRUE(analyzer.PrepareScratch(256, 256));
        EXPECT_TRUE(analyzer.valuePlane.Create(256, 256, 1, kDepth8u, 0));
        EXPECT_TRUE(analyzer.saturationPlane.Create(256, 256, 1, kDepth8u, 0));
        for (int32 i = 0; i < 65536; ++i) {
            analyzer.valuePlane.data[i] = static_cast<uint8>(i / 256);
            analyzer.saturationPlane.data[i] = static_cast<uint8>(i % 256);
        }
        EXPECT_TRUE(mask.Create(256, 256, 1, kDepth8u, 0));
        mask.Fill(154.0);
    }

    /// Expects 0 where `marked(value, saturation)`, 154 elsewhere.
    void ExpectMarked(const std::function<bool(int32, int32)>& marked) const {
        for (int32 v = 0; v < 256; ++v) {
            for (int32 s = 0; s < 256; ++s) {
                ASSERT_EQ(+mask.data[256 * v + s], marked(v, s) ? 0 : 154) << "value " << v << ", saturation " << s;
            }
        }
    }

    BackgroundAnalyzer analyzer;
    ImageBuffer mask;
};

bool Within(int32 level, int32 low, int32 high) { return level >= low && level <= high; }

TEST_F(ColourBands, MarkPairsWithinBothRangesThatShareABit) {
    MarkColourBand(100, 140, analyzer, 50, 70, mask);
    ExpectMarked([](int32 v, int32 s) { return Within(v, 100, 140) && Within(s, 50, 70) && (v & s) != 0; });
    EXPECT_EQ(+mask.data[256 * 128 + 64], 154) << "128 and 64 share none";
}

TEST_F(ColourBands, WhoseValueRangeWrapsMarkBothEndsWhateverBitsAreShared) {
    MarkColourBand(-34, 40, analyzer, 50, 70, mask); // -34 becomes 221
    ExpectMarked([](int32 v, int32 s) { return !Within(v, 40, 221) && Within(s, 50, 70); });
}

TEST_F(ColourBands, WhoseValueRangeWrapsUpwardsMarkBothEndsToo) {
    MarkColourBand(215, 280, analyzer, 50, 70, mask); // 280 becomes 25
    ExpectMarked([](int32 v, int32 s) { return !Within(v, 25, 215) && Within(s, 50, 70); });
}

TEST_F(ColourBands, WhoseSaturationRangeWrapsAskForNoValue) {
    MarkColourBand(100, 140, analyzer, -6, 17, mask); // -6 becomes 249
    ExpectMarked([](int32, int32 s) { return !Within(s, 17, 249); });
}

TEST_F(ColourBands, WhereBothWrapAskForNoValueEither) {
    MarkColourBand(-20, 40, analyzer, 240, 262, mask);
    ExpectMarked([](int32, int32 s) { return !Within(s, 7, 240); });
}

TEST_F(ColourBands, TakeLevelZeroForNothingKept) {
    MarkColourBand(0, 10, analyzer, 0, 255, mask);
    ExpectMarked([](int32 v, int32 s) { return Within(v, 0, 10) && (v & s) != 0; });
    mask.Fill(154.0);
    MarkColourBand(-255, 10, analyzer, 5, 5, mask); // from 0 to 10 after all, but turned round
    ExpectMarked([](int32 v, int32 s) { return (v == 0 || v > 10) && s == 5; });
}

TEST_F(ColourBands, OnlyAddToWhatIsMarked) {
    MarkColourBand(100, 140, analyzer, 50, 70, mask);
    MarkColourBand(200, 210, analyzer, 255, 255, mask);
    ExpectMarked([](int32 v, int32 s) {
        return (Within(v, 100, 140) && Within(s, 50, 70) && (v & s) != 0) || (Within(v, 200, 210) && s == 255);
    });
}

TEST_F(ColourBands, OfBoundsFarBeyondTheByteAreRefusedAndTold) {
    EXPECT_EQ(test::Printed([&] { MarkColourBand(-645, 855, analyzer, 5, 5, mask); }), "Assertion Failed -18 \n");
}

TEST_F(ColourBands, AroundASampleReachFurtherTowardsTheDark) {
    MarkAroundSample(mask, analyzer, 100, 100, 24);
    ExpectMarked([](int32 v, int32 s) { return Within(v, 64, 124) && Within(s, 88, 112) && (v & s) != 0; });
}

TEST_F(ColourBands, AroundASampleOfAnOddRadiusAreRoundedHalfUp) {
    MarkAroundSample(mask, analyzer, 100, 100, 3); // 95.5 + 0.5, 98.5 + 0.5, 101.5 + 0.5
    ExpectMarked([](int32 v, int32 s) { return Within(v, 96, 103) && Within(s, 99, 102) && (v & s) != 0; });
}

TEST_F(ColourBands, AroundADarkSampleMatchVeryBrightPixelsToo) {
    MarkAroundSample(mask, analyzer, 10, 100, 30);
    ExpectMarked([](int32 v, int32 s) { return (v < 40 || v > 221) && Within(s, 85, 115); });
}

TEST_F(ColourBands, AroundAGreySampleGoByTheSaturationAlone) {
    MarkAroundSample(mask, analyzer, 180, 5, 24);
    ExpectMarked([](int32, int32 s) { return s < 17 || s > 249; });
}

/// A picture of one colour, twice: marked directly, and by the table of pairs.
TEST(AllSamples, MarkTheSameDirectlyAndByTheTable) {
    for (const int32 tolerance : {5, 40, 99, 500, 1000}) {
        test::Random random(4);
        BackgroundAnalyzer small, large;
        ImageBuffer picture, tall, smallMask, largeMask;
        test::DrawPortrait({.width = 256, .height = 256, .noise = 30}, picture); // just small enough
        ASSERT_TRUE(tall.Create(256, 257, 3, kDepth8u, 0));
        std::copy_n(picture.data, 256 * 768, tall.data);
        std::copy_n(test::PixelAt(picture, 0, 255), 768, test::PixelAt(tall, 0, 256));
        ASSERT_TRUE(small.SplitColours(picture) && small.PrepareScratch(256, 256));
        ASSERT_TRUE(large.SplitColours(tall) && large.PrepareScratch(256, 257));
        small.ComputeSamplePoints(256, 256);
        large.samplePoints = small.samplePoints;
        ASSERT_TRUE(smallMask.Create(256, 256, 1, kDepth8u, 0) && largeMask.Create(256, 257, 1, kDepth8u, 0));
        smallMask.Fill(154.0);
        largeMask.Fill(154.0);
        const std::string toldSmall = test::Printed([&] { MarkAllSamples(small, smallMask, tolerance); });
        const std::string toldLarge = test::Printed([&] { MarkAllSamples(large, largeMask, tolerance); });
        EXPECT_EQ(toldSmall, toldLarge) << tolerance;
        EXPECT_EQ(toldSmall.empty(), tolerance < 400) << tolerance;
        largeMask.height = 256;
        EXPECT_SAME_PICTURE(largeMask, smallMask);
        largeMask.height = 257;
        EXPECT_EQ(std::count(smallMask.data, smallMask.data + 65536, 154) > 0, tolerance < 400) << tolerance;
    }
}

TEST(AllSamples, TakeAToleranceUnderOneForOne) {
    for (const int32 tolerance : {1, 0, -1000}) {
        BackgroundAnalyzer analyzer;
        ImageBuffer picture, mask;
        test::DrawPortrait({.width = 60, .height = 60, .noise = 6}, picture);
        ASSERT_TRUE(analyzer.SplitColours(picture) && analyzer.PrepareScratch(60, 60));
        analyzer.ComputeSamplePoints(60, 60);
        ASSERT_TRUE(mask.Create(60, 60, 1, kDepth8u, 0));
        mask.Fill(154.0);
        EXPECT_TRUE(MarkAllSamples(analyzer, mask, tolerance));
        const auto marked = std::count(mask.data, mask.data + 3600, 0);
        EXPECT_GT(marked, 0) << tolerance;
        EXPECT_LT(marked, 2000) << tolerance;
    }
}

TEST(AllSamples, SkipPointsBeyondThePlanesAndMoveThoseOnTheirEdge) {
    BackgroundAnalyzer analyzer;
    ImageBuffer picture, mask;
    ASSERT_TRUE(picture.Create(20, 10, 3, kDepth8u, 0));
    for (int32 x = 0; x < 20; ++x) {
        const auto half = static_cast<uint8>(5 + 6 * x); // of one saturation, far from both ends
        for (int32 y = 0; y < 10; ++y) test::PaintPixel(picture, x, y, {half, half, static_cast<uint8>(2 * half)});
    }
    ASSERT_TRUE(analyzer.SplitColours(picture) && analyzer.PrepareScratch(20, 10));
    ASSERT_TRUE(mask.Create(20, 10, 1, kDepth8u, 0));
    struct Case {
        ImagePoint point;
        int32 column; // that is marked, -1 for none
    };
    for (const Case& c : {Case{{-1, 5}, -1}, Case{{5, -1}, -1}, Case{{21, 5}, -1}, Case{{5, 11}, -1}, Case{{20, 5}, 19},
                          Case{{5, 10}, 5}, Case{{0, 0}, 0}, Case{{19, 9}, 19}}) {
        mask.Fill(154.0);
        analyzer.samplePoints.fill(c.point);
        EXPECT_TRUE(MarkAllSamples(analyzer, mask, 5)); // radius 3: one column's values alone
        for (int32 x = 0; x < 20; ++x) {
            EXPECT_EQ(+*test::PixelAt(mask, x, 4), x == c.column ? 0 : 154)
                << "column " << x << " for " << c.point.x << ", " << c.point.y;
        }
    }
}

TEST(AllSamples, RefuseAMaskOfAnotherSizeAndOneWithoutStorage) {
    BackgroundAnalyzer analyzer;
    ImageBuffer picture, mask;
    test::DrawPortrait({.width = 30, .height = 20}, picture);
    ASSERT_TRUE(analyzer.SplitColours(picture) && analyzer.PrepareScratch(30, 20));
    EXPECT_FALSE(MarkAllSamples(analyzer, mask, 40));
    ASSERT_TRUE(mask.Create(30, 19, 1, kDepth8u, 0));
    EXPECT_FALSE(MarkAllSamples(analyzer, mask, 40));
}

TEST(AllSamples, WithoutMemoryForTheTableAreRefused) {
    BackgroundAnalyzer analyzer;
    ImageBuffer picture, mask;
    test::DrawPortrait({.width = 300, .height = 300}, picture);
    ASSERT_TRUE(analyzer.SplitColours(picture) && analyzer.PrepareScratch(300, 300));
    ASSERT_TRUE(mask.Create(300, 300, 1, kDepth8u, 0));
    for (int32 allowed = 0; allowed < 5; ++allowed) {
        const test::HeapLimit limit(allowed);
        EXPECT_FALSE(MarkAllSamples(analyzer, mask, 40)) << allowed;
    }
}

} // namespace
} // namespace orvane
