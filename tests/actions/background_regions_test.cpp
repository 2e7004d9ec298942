// What hangs together with the face, and what with the upper right corner.
#include "actions/background_regions.h"

#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/portrait.h"
#include "tests/support/printed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace orvane {
namespace {

constexpr int32 kMost = std::numeric_limits<int32>::max();
constexpr int32 kLeast = std::numeric_limits<int32>::min();

/// A mask by letters, row 0 first: '.' background colour (0), '?' unclassified (154), '#' subject (255),
/// '-' neither (100).
uint8 LevelOf(char letter) { return letter == '.' ? 0 : letter == '?' ? 154 : letter == '#' ? 255 : 100; }

void MakeMask(ImageBuffer& mask, const std::vector<std::string>& rows) {
    ASSERT_TRUE(mask.Create(static_cast<int32>(rows[0].size()), static_cast<int32>(rows.size()), 1, kDepth8u, 0));
    for (int32 y = 0; y < mask.height; ++y) {
        for (int32 x = 0; x < mask.width; ++x) {
            *test::PixelAt(mask, x, y) = LevelOf(rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)]);
        }
    }
}

void ExpectMask(const ImageBuffer& mask, const std::vector<std::string>& rows) {
    ImageBuffer expected;
    MakeMask(expected, rows);
    EXPECT_SAME_PICTURE(mask, expected);
}

TEST(FaceCore, IsSubjectWhateverItsColoursAndSpreadsOverDiagonals) {
    ImageBuffer mask;
    MakeMask(mask, {"?......", //
                    ".?.....", //
                    "..???..", //
                    "..?.?..", //
                    "..???..", //
                    ".....?.", //
                    "??....?"});
    KeepFaceCore(mask, 2, 2, 5, 5);
    ExpectMask(mask, {"#------", //
                      "-#-----", //
                      "--###--", //
                      "--###--", //
                      "--###--", //
                      "-----#-", //
                      "------#"});
    EXPECT_EQ(+*test::PixelAt(mask, 0, 6), 100) << "what the subject does not reach";
}

TEST(FaceCore, TurnedRoundIsPaintedFromItsFarCorner) {
    ImageBuffer mask;
    MakeMask(mask, {".......", ".......", ".......", ".......", "......."});
    KeepFaceCore(mask, 4, 3, 2, 1); // two by two from (4, 3); the middle (3, 2) lies beside it, in the backdrop
    ExpectMask(mask, {"#######", "#######", "#######", "####--#", "####--#"});
}

TEST(FaceCore, IsCutAtThePlane) {
    struct Case {
        int32 left, top, right, bottom;
        const char* told;
    };
    const Case cases[] = {
        {-3, -3, 5, 5, ""},
        {3, 3, 20, 20, "Assertion Failed -11 \n"},
        {kLeast, kLeast, kMost, kMost, ""},
        {kMost, kMost, kMost, kMost, "Assertion Failed -6 \nAssertion Failed -11 \n"},
        {40, 0, 60, 2, "Assertion Failed -11 \n"},
        {2, 2, 2, 4, "Assertion Failed -6 \n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.left << ", " << c.top << " to " << c.right << ", " << c.bottom);
        ImageBuffer mask;
        MakeMask(mask, {"???????", "???????", "???????", "???????", "???????"});
        EXPECT_EQ(test::Printed([&] { KeepFaceCore(mask, c.left, c.top, c.right, c.bottom); }), c.told);
        const bool seedOutside = std::string(c.told).find("-11") != std::string::npos;
        EXPECT_EQ(+*test::PixelAt(mask, 1, 1), seedOutside ? 100 : 255);
    }
}

TEST(CornerRegion, IsClearedWithoutDiagonals) {
    ImageBuffer mask;
    MakeMask(mask, {"-#-#---", //
                    "--#----", //
                    "-#-----", //
                    "#------"});
    EXPECT_TRUE(ClearCornerRegion(mask));
    ExpectMask(mask, {"-#-#...", //
                      "--#....", //
                      "-#.....", //
                      "#......"});
}

TEST(CornerRegion, IsWhateverStandsThere) {
    ImageBuffer mask;
    MakeMask(mask, {"---####", "---####", "---####", "---####"}); // the seed (4, 1) lies on the subject
    EXPECT_TRUE(ClearCornerRegion(mask));
    ExpectMask(mask, {"---....", "---....", "---....", "---...."});
}

TEST(CornerRegion, IsABackgroundFromAFifthOfTheMaskOn) {
    // The fifth is a float, a little above a fifth: 20 of 100 are under it.
    for (const int32 area : {19, 20, 21}) {
        ImageBuffer mask;
        ASSERT_TRUE(mask.Create(10, 10, 1, kDepth8u, 0));
        mask.Fill(255.0);
        for (int32 i = 0; i < area; ++i) *test::PixelAt(mask, 9 - i % 5, 9 - i / 5) = 100; // holds (7, 7)
        EXPECT_EQ(ClearCornerRegion(mask), area == 21) << area;
    }
}

TEST(CornerRegion, OfMasksUnderThreePixelsIsNone) {
    for (const ImageSize& size : {ImageSize{2, 9}, ImageSize{9, 2}, ImageSize{1, 1}}) {
        ImageBuffer mask;
        ASSERT_TRUE(mask.Create(size.width, size.height, 1, kDepth8u, 0));
        mask.Fill(100.0);
        bool found = true;
        EXPECT_EQ(test::Printed([&] { found = ClearCornerRegion(mask); }), "Assertion Failed -11 \n");
        EXPECT_FALSE(found);
    }
    ImageBuffer mask;
    MakeMask(mask, {"---", "---", "---"});
    EXPECT_TRUE(ClearCornerRegion(mask)) << "three are enough";
}

TEST(CornerRegion, WithoutMemoryIsNone) {
    ImageBuffer mask;
    MakeMask(mask, {"----", "----", "----"});
    bool found = true;
    EXPECT_EQ(test::Printed([&] {
                  const test::HeapLimit none(0);
                  found = ClearCornerRegion(mask);
              }),
              "Assertion Failed -8 \n");
    EXPECT_FALSE(found);
    const test::HeapLimit none(0);
    EXPECT_FALSE(KeepFaceCore(mask, 1, 1, 3, 3));
}

TEST(RegionMask, IsMadeAnewWhateverTheMaskHeld) {
    ImageBuffer picture;
    test::DrawPortrait({.width = 60, .height = 70}, picture);
    BackgroundAnalyzer analyzer;
    analyzer.ComputeSamplePoints(60, 70);
    ImageBuffer mask, other;
    test::MakeRandomPicture(mask, 60, 70, 1, 1);
    test::MakeRandomPicture(other, 7, 9, 3, 1);
    const ImageRect face{20, 25, 20, 20};
    EXPECT_TRUE(BuildRegionMask(picture, mask, analyzer, 40, face));
    EXPECT_TRUE(BuildRegionMask(picture, other, analyzer, 40, face));
    EXPECT_SAME_PICTURE(mask, other);
    EXPECT_EQ(+*test::PixelAt(mask, 30, 35), 255);
    EXPECT_EQ(+*test::PixelAt(mask, 57, 67), 0);
}

TEST(RegionMask, PaintsTheCoreInsideTheFace) {
    // A picture of backdrop only: what remains of the subject is the core that was painted.
    ImageBuffer picture;
    ASSERT_TRUE(picture.Create(100, 100, 3, kDepth8u, 0));
    for (int32 i = 0; i < 10000; ++i) test::PaintPixel(picture, i % 100, i / 100, test::kBlueBackdrop);
    BackgroundAnalyzer analyzer;
    analyzer.ComputeSamplePoints(100, 100);
    ImageBuffer mask;
    EXPECT_TRUE(BuildRegionMask(picture, mask, analyzer, 40, {30, 20, 40, 50})); // 42 to 58, 26 to 64
    for (int32 y = 0; y < 100; ++y) {
        for (int32 x = 0; x < 100; ++x) {
            const bool core = x >= 42 && x < 58 && y >= 26 && y < 64;
            ASSERT_EQ(+*test::PixelAt(mask, x, y), core ? 255 : 0) << x << ", " << y;
        }
    }
}

} // namespace
} // namespace orvane
