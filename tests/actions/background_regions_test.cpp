// What hangs together with the face, and what with the upper right corner.
#include "actions/background_regions.h"

#include "tests/support/bit_planes.h"
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

/// A plane by letters, row 0 first: marked for '#'.
void MakePlane(BitPlane& plane, const std::vector<std::string>& rows) {
    const ImageSize size{static_cast<int32>(rows[0].size()), static_cast<int32>(rows.size())};
    test::MakeBitPlane(plane, size, [&](int32 x, int32 y) {
        return rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#';
    });
}

void ExpectPlane(const BitPlane& plane, const std::vector<std::string>& rows) {
    ASSERT_EQ(plane.Size().height, static_cast<int32>(rows.size()));
    EXPECT_TRUE(test::IsMarkedWhere(plane, [&](int32 x, int32 y) {
        return rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#';
    }));
}

TEST(FaceCore, IsSubjectWhateverItsColoursAndSpreadsOverDiagonals) {
    BitPlane others, subject;
    MakePlane(others, {"#......", //
                       ".#.....", //
                       "..###..", //
                       "..#.#..", //
                       "..###..", //
                       ".....#.", //
                       "##....#"});
    EXPECT_TRUE(KeepFaceCore(others, 2, 2, 5, 5, subject));
    ExpectPlane(subject, {"#......", //
                          ".#.....", //
                          "..###..", //
                          "..###..", //
                          "..###..", //
                          ".....#.", //
                          "......#"});
}

TEST(FaceCore, TurnedRoundIsPaintedFromItsFarCorner) {
    BitPlane others, subject;
    MakePlane(others, {".......", ".......", ".......", ".......", "......."});
    // Two by two from (4, 3); the middle (3, 2) lies beside it, in the backdrop.
    EXPECT_TRUE(KeepFaceCore(others, 4, 3, 2, 1, subject));
    ExpectPlane(others, {".......", ".......", ".......", "....##.", "....##."});
    ExpectPlane(subject, {"#######", "#######", "#######", "####..#", "####..#"});
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
        BitPlane others, subject;
        MakePlane(others, {"#######", "#######", "#######", "#######", "#######"});
        const std::string told =
            test::Printed([&] { EXPECT_TRUE(KeepFaceCore(others, c.left, c.top, c.right, c.bottom, subject)); });
        EXPECT_EQ(told, c.told);
        const bool seedOutside = told.find("-11") != std::string::npos;
        EXPECT_TRUE(test::IsMarkedWhere(subject, [&](int32, int32) { return !seedOutside; }));
    }
}

TEST(CornerRegion, IsFoundWithoutDiagonals) {
    BitPlane subject, background;
    MakePlane(subject, {".#.#...", //
                        "..#....", //
                        ".#.....", //
                        "#......"});
    EXPECT_TRUE(ClearCornerRegion(subject, background));
    ExpectPlane(background, {"....###", //
                             "...####", //
                             "..#####", //
                             ".######"});
}

TEST(CornerRegion, IsWhateverStandsThere) {
    BitPlane subject, background;
    MakePlane(subject, {"...####", "...####", "...####", "...####"}); // the seed (4, 1) lies on the subject
    EXPECT_TRUE(ClearCornerRegion(subject, background));
    ExpectPlane(background, {"...####", "...####", "...####", "...####"});
}

TEST(CornerRegion, IsABackgroundFromAFifthOfTheMaskOn) {
    // The fifth is a float, a little above a fifth: 20 of 100 are under it.
    for (const int32 area : {19, 20, 21}) {
        BitPlane subject, background;
        test::MakeBitPlane(subject, {10, 10}, [&](int32 x, int32 y) {
            return x < 5 || 5 * (9 - y) + 9 - x >= area; // all but so many pixels, which hold (7, 7)
        });
        EXPECT_EQ(ClearCornerRegion(subject, background), area == 21) << area;
    }
}

TEST(CornerRegion, OfMasksUnderThreePixelsIsNone) {
    for (const ImageSize& size : {ImageSize{2, 9}, ImageSize{9, 2}, ImageSize{1, 1}}) {
        BitPlane subject, background;
        ASSERT_TRUE(subject.Create(size));
        bool found = true;
        EXPECT_EQ(test::Printed([&] { found = ClearCornerRegion(subject, background); }), "Assertion Failed -11 \n");
        EXPECT_FALSE(found);
    }
    BitPlane subject, background;
    MakePlane(subject, {"...", "...", "..."});
    EXPECT_TRUE(ClearCornerRegion(subject, background)) << "three are enough";
}

TEST(CornerRegion, AndSubjectWithoutMemoryAreNone) {
    BitPlane plane;
    MakePlane(plane, {"....", "....", "...."});
    for (const int32 allowed : {0, 1}) {
        const test::HeapLimit limit(allowed);
        BitPlane background;
        const std::string told = test::Printed([&] { EXPECT_FALSE(ClearCornerRegion(plane, background)) << allowed; });
        EXPECT_EQ(told, "");
        EXPECT_TRUE(background.IsEmpty());
    }
    for (const int32 allowed : {0, 1}) {
        const test::HeapLimit limit(allowed);
        BitPlane subject;
        EXPECT_FALSE(KeepFaceCore(plane, 1, 1, 3, 3, subject)) << allowed;
    }
}

/// The mask of a picture, painted over one that held something else.
void PaintMask(const ImageBuffer& picture, ImageRect face, ImageBuffer& painted) {
    BackgroundAnalyzer analyzer;
    analyzer.ComputeSamplePoints(picture.width, picture.height);
    RegionMask mask;
    EXPECT_TRUE(BuildRegionMask(picture, mask, analyzer, 40, face));
    mask.Paint(painted);
    ASSERT_EQ(painted.width, picture.width);
    ASSERT_EQ(painted.height, picture.height);
}

TEST(RegionMask, IsPaintedWhateverTheImageHeld) {
    ImageBuffer picture, mask, other;
    test::DrawPortrait({.width = 60, .height = 70}, picture);
    test::MakeRandomPicture(mask, 60, 70, 1, 1);
    test::MakeRandomPicture(other, 7, 9, 3, 1);
    const ImageRect face{20, 25, 20, 20};
    PaintMask(picture, face, mask);
    PaintMask(picture, face, other);
    EXPECT_SAME_PICTURE(mask, other);
    EXPECT_EQ(+*test::PixelAt(mask, 30, 35), 255);
    EXPECT_EQ(+*test::PixelAt(mask, 57, 67), 0);
}

TEST(RegionMask, PaintsTheCoreInsideTheFace) {
    // A picture of backdrop only: what remains of the subject is the core that was painted.
    ImageBuffer picture;
    ASSERT_TRUE(picture.Create(100, 100, 3, kDepth8u, 0));
    for (int32 i = 0; i < 10000; ++i) test::PaintPixel(picture, i % 100, i / 100, test::kBlueBackdrop);
    ImageBuffer mask;
    PaintMask(picture, {30, 20, 40, 50}, mask); // 42 to 58, 26 to 64
    for (int32 y = 0; y < 100; ++y) {
        for (int32 x = 0; x < 100; ++x) {
            const bool core = x >= 42 && x < 58 && y >= 26 && y < 64;
            ASSERT_EQ(+*test::PixelAt(mask, x, y), core ? 255 : 0) << x << ", " << y;
        }
    }
}

TEST(RegionMask, HasALevelForEachOfTheThree) {
    // A bar through the face, between the samples of the top row, parts the backdrop.
    const auto isBar = [](int32 x) { return x == 50 || x == 51; };
    const auto isCore = [](int32 x, int32 y) { return x >= 46 && x < 54 && y >= 24 && y < 55; };
    for (const int32 width : {100, 129, 192}) {
        ImageBuffer picture, mask;
        ASSERT_TRUE(picture.Create(width, 70, 3, kDepth8u, 0));
        for (int32 i = 0; i < 70 * width; ++i) {
            const int32 x = i % width;
            test::PaintPixel(picture, x, i / width, isBar(x) ? test::Bgr{30, 90, 60} : test::kBlueBackdrop);
        }
        PaintMask(picture, {40, 20, 20, 40}, mask);
        for (int32 y = 0; y < 70; ++y) {
            for (int32 x = 0; x < width; ++x) {
                const int32 expected = isBar(x) || isCore(x, y) ? 255 : x < 50 ? 100 : 0;
                ASSERT_EQ(+*test::PixelAt(mask, x, y), expected) << x << ", " << y << " of " << width;
            }
        }
    }
}

TEST(RegionMask, WithoutMemoryIsNoneAndPaintsNothing) {
    ImageBuffer picture, before;
    test::DrawPortrait({.width = 60, .height = 70}, picture);
    BackgroundAnalyzer analyzer;
    analyzer.ComputeSamplePoints(60, 70);
    test::MakeRandomPicture(before, 7, 9, 1, 1);
    for (int32 allowed = 0; allowed < 6; ++allowed) { // a plane, twice the work of a fill and a plane, the painted mask
        ImageBuffer painted;
        painted.CopyFrom(before);
        RegionMask mask;
        const test::HeapLimit limit(allowed);
        EXPECT_EQ(BuildRegionMask(picture, mask, analyzer, 40, {20, 25, 20, 20}), allowed == 5) << allowed;
        mask.Paint(painted);
        if (allowed < 5) {
            EXPECT_SAME_PICTURE(painted, before);
        } else {
            EXPECT_EQ(painted.data, nullptr) << "the storage at hand was too small";
        }
    }
}

} // namespace
} // namespace orvane
