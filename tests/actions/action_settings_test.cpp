// The settings that the actions share, and the one place where output size and crop factors meet.
#include "actions/action_settings.h"

#include "image/result_codes.h"
#include "tests/support/settings_guard.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

constexpr int32 kMost = std::numeric_limits<int32>::max();
constexpr int32 kLeast = std::numeric_limits<int32>::min();

class OutputGeometry : public ::testing::Test {
    test::FreshSettings fresh_;
};

// No fixture here: these are the values of a freshly loaded library, whatever tests set them to.
TEST(ActionSettings, StartAsDocumented) {
    EXPECT_EQ(g_outputWidth, 240);
    EXPECT_EQ(g_outputHeight, 430);
    EXPECT_EQ(g_cropWidthFactor, 0.6F);
    EXPECT_EQ(g_cropHeightFactor, 0.8F);
    EXPECT_EQ(g_cropRatio, 0.75F);
    EXPECT_EQ(g_fillLevel, 255);
    EXPECT_EQ(g_rotationAngle, 0);
}

TEST_F(OutputGeometry, TakesAnySizeFrom75Upward) {
    EXPECT_EQ(SetOutputGeometry(76, 75), kSuccess);
    EXPECT_EQ(g_outputWidth, 76);
    EXPECT_EQ(g_outputHeight, 75);
}

TEST_F(OutputGeometry, ASideUnder75IsRefusedAndChangesNothing) {
    const ImageSize refused[] = {{74, 500}, {500, 74}, {0, 500}, {500, 0}, {-480, 860}, {480, -860}, {kLeast, kMost}};
    for (const ImageSize& size : refused) {
        SCOPED_TRACE(::testing::Message() << size.width << " by " << size.height);
        g_cropRatio = 0.5F;
        EXPECT_EQ(SetOutputGeometry(size.width, size.height), kBadCall);
        EXPECT_EQ(g_outputWidth, 240);
        EXPECT_EQ(g_outputHeight, 430);
        EXPECT_EQ(g_cropWidthFactor, 0.6F);
        EXPECT_EQ(g_cropHeightFactor, 0.8F);
    }
}

TEST_F(OutputGeometry, TheWidthIsRoundedDownToAMultipleOfFourAndTheHeightIsNot) {
    struct Case {
        int32 width, height, expectedWidth;
    };
    for (const Case& c : {Case{75, 75, 72}, Case{480, 860, 480}, Case{481, 500, 480}, Case{483, 501, 480},
                          Case{484, 501, 484}, Case{kMost, kMost, kMost - 3}}) {
        SCOPED_TRACE(::testing::Message() << c.width << " by " << c.height);
        EXPECT_EQ(SetOutputGeometry(c.width, c.height), kSuccess);
        EXPECT_EQ(g_outputWidth, c.expectedWidth);
        EXPECT_EQ(g_outputHeight, c.height);
    }
}

TEST_F(OutputGeometry, TheCropTakesTheOutputsProportions) {
    EXPECT_EQ(SetOutputGeometry(481, 500), kSuccess);
    EXPECT_EQ(g_cropHeightFactor, 0.75F);
    // From the rounded width, in double, stored as float.
    EXPECT_EQ(g_cropWidthFactor, static_cast<float>(480.0 * 0.75 / 500.0));

    EXPECT_EQ(SetOutputGeometry(240, 430), kSuccess);
    EXPECT_EQ(g_cropWidthFactor, static_cast<float>(240.0 * 0.75 / 430.0));
}

TEST_F(OutputGeometry, ARefusedCropRatioIsUsedAllTheSame) {
    g_cropRatio = 0.0F;
    EXPECT_EQ(SetOutputGeometry(480, 860), kSuccess);
    EXPECT_EQ(g_cropHeightFactor, 0.0F);
    EXPECT_EQ(g_cropWidthFactor, 0.0F);

    g_cropRatio = -1.5F;
    EXPECT_EQ(SetOutputGeometry(480, 860), kSuccess);
    EXPECT_EQ(g_cropHeightFactor, -1.5F);
    EXPECT_EQ(g_cropWidthFactor, static_cast<float>(480.0 * -1.5 / 860.0));
}

TEST_F(OutputGeometry, LeavesRatioFillLevelAndAngleAlone) {
    g_rotationAngle = 17;
    EXPECT_EQ(SetOutputGeometry(480, 860), kSuccess);
    EXPECT_EQ(g_cropRatio, 0.75F);
    EXPECT_EQ(g_fillLevel, 255);
    EXPECT_EQ(g_rotationAngle, 17);
}

} // namespace
} // namespace orvane
