// The scaling to the output size: how the size gives way to the picture's proportions, and the pixels.
#include "actions/output_scaling.h"

#include "actions/action_settings.h"
#include "image/result_codes.h"
#include "tests/reference/actions.h"
#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/printed.h"
#include "tests/support/settings_guard.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

namespace orvane {
namespace {

constexpr int32 kMost = std::numeric_limits<int32>::max();

class OutputScaling : public ::testing::Test {
protected:
    ImageBuffer source, destination;

    /// Scales a random picture and judges size and pixels by the plain form.
    void ExpectAsPlain(ImageSize picture, int32 channels, ImageSize requested) {
        SCOPED_TRACE(::testing::Message() << picture.width << " by " << picture.height << " by " << channels << " to "
                                          << requested.width << " by " << requested.height);
        test::MakeRandomPicture(source, picture.width, picture.height, channels, 7);
        ImageSize output = requested;
        ImageBuffer expected;
        ASSERT_EQ(test::reference::OutputScaling(source, output, expected), kSuccess);
        g_outputWidth = requested.width;
        g_outputHeight = requested.height;
        EXPECT_EQ(ActionOutputScaling(source, destination), kSuccess);
        EXPECT_EQ(g_outputWidth, output.width);
        EXPECT_EQ(g_outputHeight, output.height);
        EXPECT_SAME_PICTURE(destination, expected);
    }

private:
    test::FreshSettings fresh_;
};

TEST_F(OutputScaling, EnlargesOneSideUntilThePicturesProportionsFit) {
    struct Case {
        const char* what;
        ImageSize picture, requested, expected;
    };
    const Case cases[] = {
        {"wider than asked: the width grows", {180, 240}, {240, 430}, {323, 430}},
        {"much wider than asked", {800, 600}, {240, 430}, {573, 430}},
        {"narrower than asked: the height grows", {100, 400}, {240, 430}, {240, 960}},
        {"of the asked proportions: nothing changes", {480, 860}, {240, 430}, {240, 430}},
        {"of the asked size: nothing changes", {240, 430}, {240, 430}, {240, 430}},
        {"a single pixel", {1, 1}, {240, 430}, {430, 430}},
        {"a single row", {40, 1}, {76, 75}, {3000, 75}},
        {"a single column", {1, 40}, {76, 75}, {76, 3040}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        test::MakeRandomPicture(source, c.picture.width, c.picture.height, 3, 2);
        g_outputWidth = c.requested.width;
        g_outputHeight = c.requested.height;
        EXPECT_EQ(ActionOutputScaling(source, destination), kSuccess);
        EXPECT_EQ(g_outputWidth, c.expected.width);
        EXPECT_EQ(g_outputHeight, c.expected.height);
        EXPECT_EQ(destination.width, c.expected.width);
        EXPECT_EQ(destination.height, c.expected.height);
    }
}

TEST_F(OutputScaling, AThirdIsRoundedToFloatBeforeItIsCompared) {
    // 1/3 as float is above 1/3 as double: the height stays, and the width is "enlarged" to itself.
    test::MakeRandomPicture(source, 100, 300, 3, 2);
    g_outputWidth = 200;
    g_outputHeight = 600;
    EXPECT_EQ(ActionOutputScaling(source, destination), kSuccess);
    EXPECT_EQ(g_outputWidth, 200);
    EXPECT_EQ(g_outputHeight, 600);
}

TEST_F(OutputScaling, HasThePixelsOfThePlainForm) {
    ExpectAsPlain({180, 240}, 3, {240, 430}); // enlarged, cubic
    ExpectAsPlain({401, 299}, 3, {84, 75});   // reduced, box average
    ExpectAsPlain({101, 97}, 3, {101, 97});   // of its own size, cubic as well
    ExpectAsPlain({97, 301}, 3, {96, 75});
    ExpectAsPlain({3, 5}, 3, {76, 75}); // too small for cubic
    ExpectAsPlain({1, 7}, 3, {76, 75});
    ExpectAsPlain({1, 1}, 3, {76, 75});
}

TEST_F(OutputScaling, OfOneChannelGivesOneChannel) {
    ExpectAsPlain({60, 80}, 1, {96, 120});
    EXPECT_EQ(destination.channels, 1);
    ExpectAsPlain({260, 200}, 1, {96, 120});
    EXPECT_EQ(destination.channels, 1);
}

TEST_F(OutputScaling, OfItsOwnSizeIsThePictureItself) {
    test::MakeRandomPicture(source, 120, 96, 3, 4);
    g_outputWidth = 120;
    g_outputHeight = 96;
    EXPECT_EQ(ActionOutputScaling(source, destination), kSuccess);
    EXPECT_SAME_PICTURE(destination, source);
}

TEST_F(OutputScaling, LeavesNoPixelOfTheFillLevelInsideThePicture) {
    // Proportions whose rounded sizes leave the two factors apart.
    g_fillLevel = 255;
    test::Random random(9);
    for (int32 i = 0; i < 60; ++i) {
        const ImageSize picture{random.Int(1, 120), random.Int(1, 120)};
        ASSERT_TRUE(source.Create(picture.width, picture.height, 3, kDepth8u, 0));
        source.Fill(10.0);
        g_outputWidth = random.Int(75, 140);
        g_outputHeight = random.Int(75, 140);
        ASSERT_EQ(ActionOutputScaling(source, destination), kSuccess);
        ImageBuffer expected;
        ASSERT_TRUE(expected.Create(g_outputWidth, g_outputHeight, 3, kDepth8u, 0));
        expected.Fill(10.0);
        ASSERT_PRED_FORMAT2(test::SamePicture, destination, expected) << picture.width << " by " << picture.height;
    }
}

TEST_F(OutputScaling, KeepsTheEnlargedSizeForTheNextRun) {
    test::MakeRandomPicture(source, 180, 240, 3, 2);
    EXPECT_EQ(ActionOutputScaling(source, destination), kSuccess); // 240 by 430 becomes 323 by 430
    test::MakeRandomPicture(source, 100, 400, 3, 2);
    EXPECT_EQ(ActionOutputScaling(source, destination), kSuccess);
    EXPECT_EQ(g_outputWidth, 323);
    EXPECT_EQ(g_outputHeight, 1292);

    EXPECT_EQ(SetOutputGeometry(240, 430), kSuccess);
    EXPECT_EQ(g_outputWidth, 240);
    EXPECT_EQ(g_outputHeight, 430);
}

TEST_F(OutputScaling, LeavesTheCropFactorsAlone) {
    test::MakeRandomPicture(source, 180, 240, 3, 2);
    EXPECT_EQ(ActionOutputScaling(source, destination), kSuccess);
    EXPECT_EQ(g_cropWidthFactor, 0.6F);
    EXPECT_EQ(g_cropHeightFactor, 0.8F);
}

TEST_F(OutputScaling, WithoutStorageIsRefusedAndTheSizeStaysEnlarged) {
    test::MakeRandomPicture(source, 180, 240, 3, 2);
    const test::HeapLimit none(0);
    EXPECT_EQ(ActionOutputScaling(source, destination), kOutOfMemory);
    EXPECT_EQ(destination.data, nullptr);
    EXPECT_EQ(g_outputWidth, 323);
}

TEST_F(OutputScaling, OfAnAbsurdSizeIsRefused) {
    for (const ImageSize& requested : {ImageSize{kMost, 75}, ImageSize{75, kMost}, ImageSize{kMost, kMost}}) {
        SCOPED_TRACE(::testing::Message() << requested.width << " by " << requested.height);
        test::MakeRandomPicture(source, 180, 240, 3, 2);
        g_outputWidth = requested.width;
        g_outputHeight = requested.height;
        EXPECT_EQ(ActionOutputScaling(source, destination), kOutOfMemory);
        EXPECT_EQ(destination.data, nullptr);
    }
}

TEST_F(OutputScaling, OfTheThinnestPicturesIsRefused) {
    // The proportions of one row of 32,767 pixels would take an output of 14 million pixels a row.
    for (const ImageSize& picture : {ImageSize{32767, 1}, ImageSize{1, 32767}}) {
        SetOutputGeometry(240, 430);
        test::MakeRandomPicture(source, picture.width, picture.height, 3, 2);
        EXPECT_EQ(ActionOutputScaling(source, destination), kOutOfMemory) << picture.width << " by " << picture.height;
    }
}

TEST_F(OutputScaling, OfAPictureOfNoSizeIsABlankSheet) {
    source.Create(0, 7, 3, kDepth8u, 0);
    EXPECT_EQ(test::Printed([&] { EXPECT_EQ(ActionOutputScaling(source, destination), kStepFailed); }),
              "Assertion Failed -6 \n");
    ASSERT_EQ(destination.width, 240);
    ASSERT_EQ(destination.height, 430);
    EXPECT_EQ(destination.data[0], g_fillLevel);
    EXPECT_EQ(destination.data[3 * 240 * 430 - 1], g_fillLevel);
}

TEST_F(OutputScaling, OfNoPictureIsRefused) {
    EXPECT_EQ(ActionOutputScaling(source, destination), kOutOfMemory);
    EXPECT_EQ(destination.width, 0) << "no sheet is promised";
    EXPECT_EQ(g_outputWidth, 240);
    EXPECT_EQ(g_outputHeight, 430);
}

TEST_F(OutputScaling, TellsARefusedResizeOnStandardOutput) {
    test::MakeRandomPicture(source, 180, 240, 3, 2);
    source.Release(); // the shape stays: the resize gets a null pointer
    ::testing::internal::CaptureStdout();
    const int32 status = ActionOutputScaling(source, destination);
    std::fflush(stdout);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Assertion Failed -8 \n");
    EXPECT_EQ(status, kStepFailed);
    EXPECT_EQ(g_outputWidth, 323);
}

TEST_F(OutputScaling, LeavesNoUsablePictureWhenTheResizeFindsNoMemory) {
    test::MakeRandomPicture(source, 180, 240, 3, 2);
    ::testing::internal::CaptureStdout();
    int32 status;
    {
        const test::HeapLimit one(1); // the destination, and nothing for the resize
        status = ActionOutputScaling(source, destination);
    }
    std::fflush(stdout);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Assertion Failed -9 \n");
    EXPECT_EQ(status, kStepFailed);
    EXPECT_EQ(destination.data, nullptr) << "an unscaled picture must not pass for the result";
}

} // namespace
} // namespace orvane
