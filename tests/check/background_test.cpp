// The strips beside the head: where they lie, and what they tell.
#include "tools/check/background.h"

#include "tests/check/drawn_picture.h"
#include "tools/check/framing.h"

namespace orvane::tools {
namespace {

constexpr FaceBox kFace = {400, 300, 200, 200};
constexpr ImageSize kWide = {1000, 900};

TEST(Background, StripsLieBesideTheHeadFromTheCrownToTheEyes) {
    const ImageRect left = StripLeftOf(kFace, kWide);
    const ImageRect right = StripRightOf(kFace, kWide);
    const double head = kHalfHead * 200;
    EXPECT_NEAR(left.x, 500 - head - 200, 1) << "a side of the square away";
    EXPECT_NEAR(left.x + left.width, 500 - head - 80, 1) << "0.4 sides from the head";
    EXPECT_NEAR(right.x, 500 + head + 80, 1);
    EXPECT_NEAR(right.x + right.width, 500 + head + 200, 1);
    for (const ImageRect& strip : {left, right}) {
        EXPECT_NEAR(strip.y, 300 + kMedianHead.crown * 200, 1);
        EXPECT_NEAR(strip.y + strip.height, 300 + kMedianHead.eyes * 200, 1);
    }
}

TEST(Background, InATightPortraitAStripTakesTheOuterHalf) {
    const ImageSize tight{static_cast<int32>(1000 * (kHalfHead + 0.3)), 900};
    const FaceBox face{tight.width - 1000 / 2 - 100, 300, 200, 200};
    const FaceBox nearEdge{static_cast<int32>(200 * (kHalfHead + 0.3)) - 100, 300, 200, 200};
    const ImageRect left = StripLeftOf(nearEdge, {2000, 900});
    EXPECT_NEAR(left.x, 0, 1);
    EXPECT_NEAR(left.width, 0.15 * 200, 2);
    EXPECT_GT(StripRightOf(face, tight).width, 0);
}

TEST(Background, WithoutRoomThereIsNoStrip) {
    const FaceBox face{0, 300, 200, 200};
    EXPECT_EQ(StripLeftOf(face, kWide).width, 0);
    EXPECT_GT(StripRightOf(face, kWide).width, 0);
    EXPECT_FALSE(BackgroundOf(FlatPicture(200, 300, 90), {0, 50, 200, 200}));
    EXPECT_TRUE(BackgroundOf(FlatPicture(1000, 900, 90), face)) << "one strip is enough";
}

TEST(Background, OfAFlatWallIsItsLevelWithoutSpread) {
    const auto flat = BackgroundOf(FlatPicture(1000, 900, 171), kFace);
    ASSERT_TRUE(flat);
    EXPECT_EQ(flat->level, 171);
    EXPECT_EQ(flat->spread, 0);
}

TEST(Background, AShadowOnOneSideIsTheSpread) {
    const Picture wall = DrawnPicture(1000, 900, [](int32 x, int32) { return x < 500 ? 200 : 140; });
    const auto background = BackgroundOf(wall, kFace);
    ASSERT_TRUE(background);
    EXPECT_EQ(background->spread, 60);
    EXPECT_TRUE(background->level == 140 || background->level == 200);
}

TEST(Background, WhatTheFaceHidesDoesNotCount) {
    const Picture wall = DrawnPicture(1000, 900, [](int32 x, int32 y) {
        return std::abs(x - 500) < 140 && y > 180 ? 20 : 230; // head and shoulders
    });
    const auto background = BackgroundOf(wall, kFace);
    ASSERT_TRUE(background);
    EXPECT_EQ(background->level, 230);
    EXPECT_EQ(background->spread, 0);
}

TEST(Background, AStripNeverLeavesThePicture) {
    for (const FaceBox& face : {FaceBox{0, 0, 1, 1}, FaceBox{999, 899, 1, 1}, FaceBox{0, 0, 1000, 900},
                                FaceBox{300, 0, 50, 50}, FaceBox{300, 850, 50, 50}}) {
        for (const ImageRect& strip : {StripLeftOf(face, kWide), StripRightOf(face, kWide)}) {
            EXPECT_GE(strip.width, 0);
            EXPECT_GE(strip.height, 0);
            EXPECT_GE(strip.y, 0);
            EXPECT_LE(strip.y + strip.height, 900);
            if (strip.width > 0) {
                EXPECT_GE(strip.x, 0);
                EXPECT_LE(strip.x + strip.width, 1000);
            }
        }
    }
}

} // namespace
} // namespace orvane::tools
