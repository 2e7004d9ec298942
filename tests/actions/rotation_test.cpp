// The turning of pictures: exact quarter turns, free turns cut to what holds picture only.
#include "actions/rotation.h"

#include "actions/action_settings.h"
#include "image/result_codes.h"
#include "image/session_images.h"
#include "tests/reference/rotation.h"
#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/printed.h"
#include "tests/support/settings_guard.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace orvane {
namespace {

class Rotation : public ::testing::Test {
protected:
    Rotation() { test::MakeRandomPicture(g_workImage, 5, 4, 3, 1); }
    ~Rotation() override { g_workImage.Reset(); }

    ImageBuffer source, result;

    static const uint8* Pixel(const ImageBuffer& image, int32 x, int32 y) {
        return RowAt(image.data, image.Step(), y) + std::ptrdiff_t{1} * x * image.channels;
    }

    static ::testing::AssertionResult AllAre(uint8 value, const ImageBuffer& image, ImageRect rect) {
        for (int32 y = rect.y; y < rect.y + rect.height; ++y) {
            for (int32 i = 0; i < rect.width * image.channels; ++i) {
                const uint8 found = Pixel(image, rect.x, y)[i];
                if (found != value) return ::testing::AssertionFailure() << +found << " in row " << y;
            }
        }
        return ::testing::AssertionSuccess();
    }

    void ExpectAsPlain(ImageSize size, int32 channels, int32 angle) {
        test::MakeRandomPicture(source, size.width, size.height, channels, 3);
        ImageBuffer expected;
        test::reference::TurnPicture(source, expected, angle);
        RotateImage(source, result, angle);
        ASSERT_PRED_FORMAT2(test::SamePicture, result, expected)
            << size.width << " by " << size.height << " by " << channels << " at " << angle;
    }

private:
    test::FreshSettings fresh_;
};

TEST_F(Rotation, ByNothingIsTheSamePicture) {
    test::MakeRandomPicture(source, 31, 17, 3, 1);
    EXPECT_EQ(ActionRotate(source, result, 0), kSuccess);
    EXPECT_SAME_PICTURE(result, source);
    EXPECT_NE(result.data, source.data);
}

TEST_F(Rotation, PositiveAnglesTurnClockwiseAsAPersonSees) {
    // Row 0 is the bottom: a mark at the right end of the top row goes down the right side.
    ASSERT_TRUE(source.Create(20, 10, 1, kDepth8u, 0));
    RowAt(source.data, source.Step(), 9)[19] = 255;
    RotateImage(source, result, 90);
    EXPECT_EQ(result.width, 10);
    EXPECT_EQ(result.height, 20);
    EXPECT_EQ(+*Pixel(result, 9, 1), 255);
}

TEST_F(Rotation, QuarterTurnsExchangeTheSidesAndHalfTurnsKeepThem) {
    test::MakeRandomPicture(source, 30, 20, 3, 1);
    for (const int32 angle : {90, 270}) {
        RotateImage(source, result, angle);
        EXPECT_EQ(result.width, 20) << angle;
        EXPECT_EQ(result.height, 30) << angle;
    }
    RotateImage(source, result, 180);
    EXPECT_EQ(result.width, 30);
    EXPECT_EQ(result.height, 20);
}

TEST_F(Rotation, QuarterTurnsMovePixelsWithoutChange) {
    for (const ImageSize& size : {ImageSize{30, 20}, ImageSize{31, 21}, ImageSize{8, 31}, ImageSize{1, 9}}) {
        for (const int32 channels : {1, 3}) {
            test::Printed([&] { // of the single column nothing lands
                for (const int32 angle : {90, 180, 270}) ExpectAsPlain(size, channels, angle);
            });
        }
    }
}

TEST_F(Rotation, ByNinetyLosesTheFirstColumnAndLeavesTheFirstRowBlack) {
    test::MakeRandomPicture(source, 30, 20, 3, 1);
    source.Fill(200.0);
    RotateImage(source, result, 90);
    EXPECT_TRUE(AllAre(0, result, {0, 0, 20, 1})) << "an even width leaves one row";
    EXPECT_TRUE(AllAre(200, result, {0, 1, 20, 29}));
    test::MakeRandomPicture(source, 31, 20, 3, 1);
    source.Fill(200.0);
    RotateImage(source, result, 90);
    EXPECT_TRUE(AllAre(0, result, {0, 0, 20, 2})) << "an odd width leaves two rows";
    EXPECT_TRUE(AllAre(200, result, {0, 2, 20, 29}));
}

TEST_F(Rotation, ByTwoHundredAndSeventyLeavesTheFirstColumnsBlack) {
    for (const int32 height : {20, 21}) {
        const int32 left = height % 2 == 0 ? 1 : 2;
        test::MakeRandomPicture(source, 30, height, 1, 1);
        source.Fill(200.0);
        RotateImage(source, result, 270);
        EXPECT_TRUE(AllAre(0, result, {0, 0, left, 30})) << height;
        EXPECT_TRUE(AllAre(200, result, {left, 0, height - left, 30})) << height;
    }
}

TEST_F(Rotation, ByAHalfTurnLeavesTheSourcesOwnPixelsWhereNothingLands) {
    test::MakeRandomPicture(source, 30, 21, 3, 1);
    RotateImage(source, result, 180);
    for (int32 x = 0; x < 30; ++x) {
        for (const int32 y : {0, 1}) {
            for (int32 c = 0; c < 3; ++c) ASSERT_EQ(+Pixel(result, x, y)[c], +Pixel(source, x, y)[c]) << x << "," << y;
        }
    }
    EXPECT_EQ(+*Pixel(result, 1, 2), +*Pixel(source, 29, 20));
}

TEST_F(Rotation, ByAFreeAngleShrinksThePicture) {
    struct Case {
        int32 angle;
        ImageSize size;
    };
    test::MakeRandomPicture(source, 300, 400, 3, 1);
    for (const Case& c : {Case{5, {264, 372}}, Case{1, {293, 395}}, Case{-5, {264, 372}}, Case{355, {264, 372}},
                          Case{44, {62, 79}}, Case{185, {264, 372}}}) {
        EXPECT_EQ(ActionRotate(source, result, c.angle), kSuccess);
        EXPECT_NEAR(result.width, c.size.width, 1) << c.angle;
        EXPECT_NEAR(result.height, c.size.height, 1) << c.angle;
    }
}

TEST_F(Rotation, ByAFreeAngleHoldsOnlyPicture) {
    ASSERT_TRUE(source.Create(300, 400, 3, kDepth8u, 0));
    source.Fill(90.0);
    for (const int32 angle : {1, 5, 17, 30, 44, 100, 200, 359, -7}) {
        RotateImage(source, result, angle);
        ASSERT_NE(result.data, nullptr) << angle;
        // The outermost row or column may lie on the turned outline itself.
        EXPECT_TRUE(AllAre(90, result, {1, 1, result.width - 2, result.height - 2})) << angle;
    }
}

TEST_F(Rotation, ByThreeHundredAndSixtyAndMinusNinetyAreFreeTurns) {
    test::MakeRandomPicture(source, 40, 30, 3, 1);
    RotateImage(source, result, 360);
    EXPECT_EQ(result.width, 39);
    EXPECT_EQ(result.height, 29);
    RotateImage(source, result, -90);
    EXPECT_EQ(result.width, 29);
    EXPECT_EQ(result.height, 39);
    // Corners that truncate alike leave the far corner to start from: one pixel, and black beyond it.
    EXPECT_TRUE(AllAre(0, result, {1, 1, 28, 38}));
}

TEST_F(Rotation, WhereCornersTruncateAlikeItStartsFromTheFarSide) {
    struct Case {
        ImageSize size;
        int32 angle;
    };
    for (const Case& c : {Case{{2, 3}, 1}, Case{{20, 9}, -270}, Case{{40, 30}, 360}}) {
        const test::reference::FreeTurn turn = test::reference::PlanTurn(c.size, c.angle);
        EXPECT_GT(turn.left, turn.right);
        EXPECT_GT(turn.top, turn.bottom);
        ExpectAsPlain(c.size, 3, c.angle);
        EXPECT_EQ(result.width, turn.left - turn.right);
        EXPECT_EQ(result.height, turn.top - turn.bottom);
    }
}

TEST_F(Rotation, HasThePixelsOfThePlainForm) {
    test::Printed([&] { // results without pixels are told
        for (const ImageSize& size : {ImageSize{47, 63}, ImageSize{2, 2}, ImageSize{3, 40}, ImageSize{120, 90}}) {
            for (int32 angle = -720; angle <= 720; angle += 7) ExpectAsPlain(size, 1 + (angle & 2), angle);
        }
    });
}

TEST_F(Rotation, ByEveryAngleOfEverySmallPictureStaysInsideTheCanvas) {
    std::string difference; // the library tells a lot meanwhile, and so would the test
    const auto turn = [&](const ImageSize& size, int32 angle) {
        ImageBuffer expected;
        test::reference::TurnPicture(source, expected, angle);
        const int32 status = ActionRotate(source, result, angle);
        const auto same = test::SamePicture("result", "expected", result, expected);
        if (!difference.empty() || (status == kSuccess && same)) return;
        difference = std::to_string(size.width) + " by " + std::to_string(size.height) + " at " +
                     std::to_string(angle) + ": status " + std::to_string(status) + ", " + same.message();
    };
    const std::string told = test::Printed([&] {
        for (const ImageSize& size : {ImageSize{1, 1}, ImageSize{1, 2}, ImageSize{2, 1}, ImageSize{2, 3},
                                      ImageSize{4, 16}, ImageSize{17, 1}, ImageSize{9, 9}, ImageSize{64, 48}}) {
            for (const int32 channels : {1, 3}) {
                test::MakeRandomPicture(source, size.width, size.height, channels, 1);
                for (int32 angle = -720; angle <= 720; ++angle) turn(size, angle);
            }
        }
    });
    EXPECT_EQ(difference, "");
    // Pictures under two pixels, and results without pixels.
    EXPECT_NE(told.find("Assertion Failed -57 \n"), std::string::npos);
    EXPECT_NE(told.find("Assertion Failed -8 \n"), std::string::npos);
}

TEST_F(Rotation, ByExtremeAnglesIsReducedFirst) {
    for (const int32 angle : {std::numeric_limits<int32>::max(), std::numeric_limits<int32>::min(), 100'000}) {
        ExpectAsPlain({40, 30}, 3, angle);
    }
}

TEST_F(Rotation, WithNothingBetweenTheCornersHasNoStorageAndIsNoFailure) {
    test::MakeRandomPicture(source, 200, 200, 3, 1);
    test::MakeRandomPicture(result, 20, 20, 3, 1);
    EXPECT_EQ(test::Printed([&] { EXPECT_EQ(ActionRotate(source, result, 45), kSuccess); }), "Assertion Failed -8 \n");
    EXPECT_EQ(result.data, nullptr);
    EXPECT_EQ(result.width, 0);
    EXPECT_EQ(result.channels, 3);
}

TEST_F(Rotation, OfOneRowIsToldAndLeavesBlack) {
    test::MakeRandomPicture(source, 40, 1, 3, 1);
    const std::string told = test::Printed([&] { EXPECT_EQ(ActionRotate(source, result, 72), kSuccess); });
    EXPECT_EQ(told.find("Assertion Failed -57 \n"), 0u) << told;
    ASSERT_EQ(ActionRotate(source, result, 90), kSuccess);
    EXPECT_EQ(result.width, 1);
    EXPECT_EQ(result.height, 40);
}

TEST_F(Rotation, OfOneColumnByNinetyHasNothingThatLands) {
    test::MakeRandomPicture(source, 1, 9, 3, 1);
    EXPECT_EQ(test::Printed([&] { ActionRotate(source, result, 90); }), "Assertion Failed 29 \n");
    EXPECT_TRUE(AllAre(0, result, {0, 0, 9, 1}));
}

TEST_F(Rotation, KeepsTheAngle) {
    test::MakeRandomPicture(source, 20, 10, 3, 1);
    ActionRotate(source, result, 33);
    EXPECT_EQ(g_rotationAngle, 33);
    ActionRotate(source, result, -720);
    EXPECT_EQ(g_rotationAngle, -720);
}

TEST_F(Rotation, OfASourceWithoutStorageChangesNothing) {
    g_rotationAngle = 12;
    test::MakeRandomPicture(result, 20, 10, 3, 1);
    ImageBuffer before;
    before.CopyFrom(result);
    EXPECT_EQ(ActionRotate(source, result, 33), kSuccess) << "the work picture has storage";
    EXPECT_SAME_PICTURE(result, before);
    EXPECT_EQ(g_rotationAngle, 12);
}

TEST_F(Rotation, AnswersByTheWorkPictureWhicheverIsTurned) {
    test::MakeRandomPicture(source, 20, 10, 3, 1);
    g_workImage.Reset();
    EXPECT_EQ(ActionRotate(source, result, 90), kNoPicture);
    EXPECT_EQ(result.width, 10) << "turned all the same";
    source.Reset();
    EXPECT_EQ(ActionRotate(source, result, 90), kNoPicture);
}

TEST_F(Rotation, AskedForDirectlyWithoutStorageIsTold) {
    source.width = source.height = std::numeric_limits<int32>::max();
    source.channels = 3;
    source.depth = kDepth8u;
    for (const int32 angle : {45, 90, 180}) {
        EXPECT_EQ(test::Printed([&] { RotateImage(source, result, angle); }), "Assertion Failed -8 \n");
        EXPECT_EQ(result.data, nullptr);
    }
}

TEST_F(Rotation, OfOtherDepthsTakesTheFirstBytesOfTheRows) {
    for (const DepthCode depth : {kDepth16s, kDepth32f, kDepth64f, kDepth32fc}) {
        ASSERT_TRUE(source.Create(20, 10, 1, depth, 0));
        for (const int32 angle : {0, 17, 90, 180, 270, 360}) {
            RotateImage(source, result, angle);
            EXPECT_NE(result.data, nullptr) << depth << " at " << angle;
        }
    }
}

TEST_F(Rotation, WithoutMemoryHasNoStorage) {
    test::MakeRandomPicture(source, 64, 48, 3, 1);
    test::Printed([&] {
        for (const int32 angle : {0, 10, 90, 180, 270}) {
            for (const int32 allowed : {0, 1}) {
                ImageBuffer turned;
                const test::HeapLimit limit(allowed);
                ActionRotate(source, turned, angle);
                EXPECT_EQ(turned.data != nullptr, allowed == 1) << angle << " with " << allowed;
            }
            ImageBuffer turned;
            const test::HeapFault first(0);
            ActionRotate(source, turned, angle);
            EXPECT_EQ(turned.data, nullptr) << angle;
        }
    });
}

} // namespace
} // namespace orvane
