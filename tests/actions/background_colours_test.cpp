// The bands of background colours over all pairs of value and saturation, and the pixels that they mark.
#include "actions/background_colours.h"

#include "actions/colour_bands.h"
#include "tests/reference/pixel.h"
#include "tests/support/bit_planes.h"
#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/portrait.h"
#include "tests/support/printed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <functional>
#include <string>

namespace orvane {
namespace {

/// Marks over all pairs, laid directly and by planes at once.
class ColourBands : public ::testing::Test {
protected:
    ColourBands() {
        EXPECT_TRUE(planes.Create());
        EXPECT_TRUE(byPlanes.Create(256, 256, 1, kDepth8u, 0));
        Clear();
    }

    void Clear() {
        marks = {};
        byPlanes.Fill(154.0);
    }
    void Mark(const ColourBand& band) {
        EXPECT_TRUE(MarkBand(band, marks));
        planes.Mark(band, byPlanes);
    }

    /// Expects marks where `marked(value, saturation)` and nowhere else.
    void ExpectMarked(const std::function<bool(int32, int32)>& marked) const {
        for (int32 v = 0; v < 256; ++v) {
            for (int32 s = 0; s < 256; ++s) {
                ASSERT_EQ(IsMarked(v, s), marked(v, s)) << "value " << v << ", saturation " << s;
                ASSERT_EQ(+byPlanes.data[256 * v + s], marked(v, s) ? 0 : 154)
                    << "value " << v << ", saturation " << s << ", by planes";
            }
        }
    }

    bool IsMarked(int32 value, int32 saturation) const {
        return marks[static_cast<std::size_t>(value)].Has(saturation);
    }
    bool IsAnyMarked() const {
        for (int32 i = 0; i < kColourPairs; ++i) {
            if (IsMarked(i / kColourLevels, i % kColourLevels)) return true;
        }
        return false;
    }

    ColourMarks marks;
    BandPlanes planes;
    ImageBuffer byPlanes;
};

bool Within(int32 level, int32 low, int32 high) { return level >= low && level <= high; }

TEST_F(ColourBands, MarkPairsWithinBothRangesThatShareABit) {
    Mark({100, 140, 50, 70});
    ExpectMarked([](int32 v, int32 s) { return Within(v, 100, 140) && Within(s, 50, 70) && (v & s) != 0; });
    EXPECT_FALSE(IsMarked(128, 64)) << "they share no bit";
}

TEST_F(ColourBands, WhoseValueRangeWrapsMarkBothEndsWhateverBitsAreShared) {
    Mark({-34, 40, 50, 70}); // -34 becomes 221
    ExpectMarked([](int32 v, int32 s) { return !Within(v, 40, 221) && Within(s, 50, 70); });
}

TEST_F(ColourBands, WhoseValueRangeWrapsUpwardsMarkBothEndsToo) {
    Mark({215, 280, 50, 70}); // 280 becomes 25
    ExpectMarked([](int32 v, int32 s) { return !Within(v, 25, 215) && Within(s, 50, 70); });
}

TEST_F(ColourBands, WhoseSaturationRangeWrapsAskForNoValue) {
    Mark({100, 140, -6, 17}); // -6 becomes 249
    ExpectMarked([](int32, int32 s) { return !Within(s, 17, 249); });
}

TEST_F(ColourBands, WhereBothWrapAskForNoValueEither) {
    Mark({-20, 40, 240, 262});
    ExpectMarked([](int32, int32 s) { return !Within(s, 7, 240); });
}

TEST_F(ColourBands, TakeLevelZeroForNothingKept) {
    Mark({0, 10, 0, 255});
    ExpectMarked([](int32 v, int32 s) { return Within(v, 0, 10) && (v & s) != 0; });
    Clear();
    Mark({-255, 10, 5, 5}); // from 0 to 10 after all, but turned round
    ExpectMarked([](int32 v, int32 s) { return (v == 0 || v > 10) && s == 5; });
}

TEST_F(ColourBands, OnlyAddToWhatIsMarked) {
    Mark({100, 140, 50, 70});
    Mark({200, 210, 255, 255});
    ExpectMarked([](int32 v, int32 s) {
        return (Within(v, 100, 140) && Within(s, 50, 70) && (v & s) != 0) || (Within(v, 200, 210) && s == 255);
    });
}

TEST_F(ColourBands, OfBoundsFarBeyondTheByteAreRefusedAndTold) {
    const ColourBand far{-645, 855, 5, 5};
    EXPECT_EQ(test::Printed([&] { EXPECT_FALSE(MarkBand(far, marks)); }), "");
    EXPECT_FALSE(IsAnyMarked()) << "directly";
    EXPECT_EQ(test::Printed([&] { planes.Mark(far, byPlanes); }), "Assertion Failed -18 \n");
}

TEST_F(ColourBands, AroundASampleReachFurtherTowardsTheDark) {
    Mark(BandAround(100, 100, 24));
    ExpectMarked([](int32 v, int32 s) { return Within(v, 64, 124) && Within(s, 88, 112) && (v & s) != 0; });
}

TEST_F(ColourBands, AroundASampleOfAnOddRadiusAreRoundedHalfUp) {
    Mark(BandAround(100, 100, 3)); // 95.5 + 0.5, 98.5 + 0.5, 101.5 + 0.5
    ExpectMarked([](int32 v, int32 s) { return Within(v, 96, 103) && Within(s, 99, 102) && (v & s) != 0; });
}

TEST_F(ColourBands, AroundADarkSampleMatchVeryBrightPixelsToo) {
    Mark(BandAround(10, 100, 30));
    ExpectMarked([](int32 v, int32 s) { return (v < 40 || v > 221) && Within(s, 85, 115); });
}

TEST_F(ColourBands, AroundAGreySampleGoByTheSaturationAlone) {
    Mark(BandAround(180, 5, 24));
    ExpectMarked([](int32, int32 s) { return s < 17 || s > 249; });
}

TEST_F(ColourBands, OfAllRangesAreTheSameDirectlyAndByPlanes) {
    test::Random random(7);
    for (int32 round = 0; round < 300; ++round) {
        Clear();
        for (int32 bands = random.Int(1, 3); bands > 0; --bands) {
            const int32 value = random.Int(-255, 255), saturation = random.Int(-255, 255);
            const ColourBand band{value, random.Int(std::max(value, 0), 510), saturation,
                                  random.Int(std::max(saturation, 0), 510)};
            Mark(band);
        }
        for (int32 i = 0; i < kColourPairs; ++i) {
            ASSERT_EQ(IsMarked(i / kColourLevels, i % kColourLevels), byPlanes.data[i] == 0)
                << "round " << round << ", pair " << i;
        }
    }
}

TEST_F(ColourBands, WithoutMemoryForPlanesAreRefused) {
    for (int32 allowed = 0; allowed < 4; ++allowed) {
        const test::HeapLimit limit(allowed);
        EXPECT_FALSE(BandPlanes().Create()) << allowed;
    }
}

TEST(AllSamples, MarkWhatTheBandsMark) {
    for (const int32 tolerance : {5, 40, 99, 500, 1000}) {
        for (const ImageSize& size : {ImageSize{60, 50}, ImageSize{256, 257}, ImageSize{3, 90}}) {
            ImageBuffer picture, marks;
            BitPlane others;
            test::DrawPortrait({.width = size.width, .height = size.height, .noise = 30}, picture);
            BackgroundAnalyzer analyzer;
            analyzer.ComputeSamplePoints(size.width, size.height);
            const auto colourAt = [&](int32 x, int32 y) {
                const uint8* bgr = test::PixelAt(picture, std::min(x, size.width - 1), std::min(y, size.height - 1));
                return test::reference::Hsv({bgr[2], bgr[1], bgr[0]});
            };
            BandPlanes planes;
            ASSERT_TRUE(planes.Create() && marks.Create(256, 256, 1, kDepth8u, 0));
            marks.Fill(154.0);
            const std::string expectedTold = test::Printed([&] {
                for (const ImagePoint& p : analyzer.samplePoints) {
                    const auto hsv = colourAt(p.x, p.y);
                    planes.Mark(BandAround(hsv[2], hsv[1], static_cast<int32>(tolerance * 0.6 + 0.5)), marks);
                }
            });
            const std::string told =
                test::Printed([&] { EXPECT_TRUE(MarkAllSamples(picture, analyzer, others, tolerance)); });
            EXPECT_EQ(told, expectedTold) << tolerance;
            EXPECT_EQ(told.empty(), tolerance < 400) << tolerance;
            EXPECT_TRUE(test::IsMarkedWhere(others,
                                            [&](int32 x, int32 y) {
                                                const auto hsv = colourAt(x, y);
                                                return marks.data[256 * hsv[2] + hsv[1]] != 0;
                                            }))
                << size.width << " by " << size.height << " at " << tolerance;
        }
    }
}

TEST(AllSamples, TakeAToleranceUnderOneForOne) {
    for (const int32 tolerance : {1, 0, -1000}) {
        BackgroundAnalyzer analyzer;
        ImageBuffer picture;
        BitPlane others;
        test::DrawPortrait({.width = 60, .height = 60, .noise = 6}, picture);
        analyzer.ComputeSamplePoints(60, 60);
        EXPECT_TRUE(MarkAllSamples(picture, analyzer, others, tolerance));
        int32 marked = 3600;
        for (int32 y = 0; y < 60; ++y) marked -= std::popcount(*others.Row(y));
        EXPECT_GT(marked, 0) << tolerance;
        EXPECT_LT(marked, 2000) << tolerance;
    }
}

TEST(AllSamples, SkipPointsBeyondThePictureAndMoveThoseOnTheirEdge) {
    BackgroundAnalyzer analyzer;
    ImageBuffer picture;
    ASSERT_TRUE(picture.Create(20, 10, 3, kDepth8u, 0));
    for (int32 x = 0; x < 20; ++x) {
        const auto half = static_cast<uint8>(5 + 6 * x); // of one saturation, far from both ends
        for (int32 y = 0; y < 10; ++y) test::PaintPixel(picture, x, y, {half, half, static_cast<uint8>(2 * half)});
    }
    struct Case {
        ImagePoint point;
        int32 column; // that is marked, -1 for none
    };
    for (const Case& c : {Case{{-1, 5}, -1}, Case{{5, -1}, -1}, Case{{21, 5}, -1}, Case{{5, 11}, -1}, Case{{20, 5}, 19},
                          Case{{5, 10}, 5}, Case{{0, 0}, 0}, Case{{19, 9}, 19}}) {
        analyzer.samplePoints.fill(c.point);
        BitPlane others;
        EXPECT_TRUE(MarkAllSamples(picture, analyzer, others, 5)); // radius 3: one column's values alone
        EXPECT_TRUE(test::IsMarkedWhere(others, [&](int32 x, int32) { return x != c.column; }))
            << c.point.x << ", " << c.point.y;
    }
}

TEST(AllSamples, WithoutMemoryAreRefused) {
    BackgroundAnalyzer analyzer;
    ImageBuffer picture;
    test::DrawPortrait({.width = 30, .height = 20}, picture);
    for (const int32 tolerance : {40, 1000}) { // bands that need planes, and planes need memory of their own
        for (int32 allowed = 0; allowed < (tolerance == 40 ? 1 : 6); ++allowed) {
            BitPlane others;
            const test::HeapLimit limit(allowed);
            EXPECT_FALSE(MarkAllSamples(picture, analyzer, others, tolerance)) << allowed << " at " << tolerance;
        }
    }
}

} // namespace
} // namespace orvane
