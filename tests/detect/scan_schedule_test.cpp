// When a scan begins and ends, which passes run, and what a picture's size decides.
#include "tests/detect/scan_fixture.h"

#include <algorithm>

namespace orvane::test {
namespace {

class ScanSchedule : public ScanFixture {
protected:
    void SetUp() override { ASSERT_EQ(0, files_.Load(FaceCascade())); }

    std::vector<int32> ScaledWidths() const {
        std::vector<int32> widths;
        for (const auto& scale : recorder_.Scales()) widths.push_back(scale.scaled.width);
        return widths;
    }
};

TEST_F(ScanSchedule, InitialScaleGoesByTheWidth) {
    struct {
        int32 width, minFaceSize;
        float scale;
    } const cases[] = {{1, 0, 1.0F},     {351, 17, 1.0F},       {352, 17, 2.25F},      {400, 20, 2.25F},
                       {499, 24, 2.25F}, {500, 35, 35 / 24.0F}, {640, 44, 44 / 24.0F}, {4000, 280, 280 / 24.0F}};
    for (const auto& c : cases) EXPECT_EQ(c.scale, InitialScale(c.width, c.minFaceSize, 24)) << "width " << c.width;
}

TEST_F(ScanSchedule, LimitsGoByTheWidth) {
    struct {
        int32 width;
        float radius, ratio;
        int32 minFaceSize, maxFaceSize, firstWidth;
    } const cases[] = {{351, 30.0F, 0.05F, 17, 333, 351}, {352, 30.0F, 0.05F, 17, 334, 156},
                       {400, 30.0F, 0.05F, 20, 380, 177}, {499, 30.0F, 0.05F, 24, 474, 221},
                       {500, 40.0F, 0.07F, 35, 475, 342}, {640, 40.0F, 0.07F, 44, 608, 349}};
    for (const auto& c : cases) {
        recorder_.Forget();
        DetectorParams params = Params(1.05F, 4);
        ASSERT_TRUE(ToImage(BlankScene(c.width, 500), g_sourceImage));
        EXPECT_EQ(10, ScanScales(g_workImage, params, g_sourceImage));
        EXPECT_EQ(c.radius, g_groupRadius) << "width " << c.width;
        EXPECT_EQ(c.ratio, g_minFaceRatio) << "width " << c.width;
        EXPECT_EQ(c.minFaceSize, params.minFaceSize) << "width " << c.width;
        EXPECT_EQ(c.maxFaceSize, g_maxFaceSize) << "width " << c.width;
        ASSERT_FALSE(recorder_.Scales().empty());
        EXPECT_EQ(c.firstWidth, recorder_.Scales()[0].scaled.width) << "width " << c.width;
    }
}

TEST_F(ScanSchedule, Of640By480IsTheWorkedOne) {
    EXPECT_EQ(10, Scan(BlankScene(640, 480), 1.05F));
    const auto widths = ScaledWidths();
    ASSERT_GT(widths.size(), 3u);
    EXPECT_EQ(349, widths[0]);
    EXPECT_EQ(332, widths[1]);
    EXPECT_EQ(316, widths[2]);
    // The height leaves the loop here: the next scale would have 29 rows or fewer.
    const auto& last = recorder_.Scales().back();
    EXPECT_GT(last.scaled.height, 28);
    EXPECT_LE(480 * last.factor / 1.05, 29.0);
    for (std::size_t i = 1; i < widths.size(); ++i) {
        EXPECT_NEAR(recorder_.Scales()[i - 1].factor / 1.05, recorder_.Scales()[i].factor, 1e-6) << "scale " << i;
    }
}

TEST_F(ScanSchedule, EndsByWidthHeightOrLargestFace) {
    struct {
        const char* what;
        int32 width, height;
        float maxFaceRatio;
        std::vector<int32> widths;
    } const cases[] = {
        {"exactly the window", 24, 24, 0.95F, {}},
        {"as wide as the window and 5", 29, 100, 0.95F, {}},
        {"as high as the window and 5", 100, 29, 0.95F, {}},
        {"one more both ways", 30, 30, 0.95F, {30}},
        {"one more each way, wide", 60, 30, 0.95F, {60}},
        {"largest face equal to the window", 100, 100, 0.24F, {}},
        {"largest face above the window", 100, 100, 0.25F, {100}},
        {"largest face between the second scale and the third", 100, 100, 0.27F, {100, 90}}, // 26.4, 29.04
    };
    for (const auto& c : cases) {
        recorder_.Forget();
        g_maxFaceRatio = c.maxFaceRatio;
        EXPECT_EQ(10, Scan(BlankScene(c.width, c.height), 1.1F)) << c.what;
        EXPECT_EQ(c.widths, ScaledWidths()) << c.what;
    }
}

TEST_F(ScanSchedule, AScaleFactorThatDoesNotGrowBecomesOnePointOne) {
    for (const float factor : {1.0F, 0.5F, 0.0F, -3.0F}) {
        recorder_.Forget();
        DetectorParams params = Params(factor, 4);
        ASSERT_TRUE(ToImage(BlankScene(60, 60), g_sourceImage));
        EXPECT_EQ(10, ScanScales(g_workImage, params, g_sourceImage));
        EXPECT_EQ(1.1F, params.scaleFactor);
        EXPECT_EQ((std::vector<int32>{60, 54, 49, 45, 40, 37, 33, 30}), ScaledWidths()) << factor;
    }
}

TEST_F(ScanSchedule, ABlankPictureIsScannedTwiceAndHasNoFace) {
    g_faceRecord = {1, 2, 3, 4};
    EXPECT_EQ(10, Run(BlankScene(100, 80), false));
    EXPECT_EQ(0, g_faceRecord.centreX);
    EXPECT_EQ(0, g_faceRecord.faceHeight);
    EXPECT_EQ(1, g_detectorParams->passTag);
    EXPECT_EQ(1.02F, g_detectorParams->scaleFactor);
    EXPECT_EQ(4, g_detectorParams->pruneMode);
    EXPECT_EQ(0, g_detectorParams->reservedSize);
    EXPECT_EQ(0, g_positiveCount);
    const auto& scales = recorder_.Scales();
    const auto starts =
        std::count_if(scales.begin(), scales.end(), [](const auto& s) { return s.scaled.width == 100; });
    EXPECT_EQ(2, starts);
    for (const auto& scale : scales) {
        EXPECT_EQ(1, scale.stages) << "the first stage sees an empty mask, and none comes after it";
        EXPECT_EQ(scale.mask.size(), static_cast<std::size_t>(std::count(scale.mask.begin(), scale.mask.end(), 0)));
    }
}

// What SECURITY.md promises: however a picture is shaped, its time is bounded by its pixels. A pass that grows by f
// looks at 1 / (1 - 1 / f^2) windows for each position of its first scale: 10.8 and 25.8 for the two.
TEST_F(ScanSchedule, LooksAtNoMoreThan37WindowsAPixel) {
    const ImageSize sizes[] = {{30, 2000},  {351, 300},  {351, 3000}, {352, 300}, {499, 900}, {500, 300},
                               {514, 3000}, {2000, 150}, {900, 900},  {90, 90},   {60, 31}};
    double most = 0.0;
    for (const ImageSize& size : sizes) {
        recorder_.Forget();
        EXPECT_EQ(10, Run(BlankScene(size.width, size.height), false));
        double windows = 0.0;
        for (const auto& scale : recorder_.Scales())
            windows += double{1} * scale.positions.width * scale.positions.height;
        const double share = windows / (double{1} * size.width * size.height);
        EXPECT_LE(share, 37.0) << size.width << " by " << size.height;
        most = std::max(most, share);
    }
    EXPECT_GT(most, 25.0) << "the bound says little";
}

TEST_F(ScanSchedule, TheQuickPassIsTheOnlyOne) {
    EXPECT_EQ(10, Run(BlankScene(100, 80), true));
    EXPECT_EQ(2, g_detectorParams->passTag);
    EXPECT_EQ(1.09F, g_detectorParams->scaleFactor);
    const auto widths = ScaledWidths();
    EXPECT_EQ(1, std::count(widths.begin(), widths.end(), 100));
}

TEST_F(ScanSchedule, AFaceOfTheNormalPassNeedsNoRetry) {
    EXPECT_EQ(0, Run(FaceScene(160, 120, 50, 30, 48), false));
    EXPECT_EQ(0, g_detectorParams->passTag);
    EXPECT_EQ(1.05F, g_detectorParams->scaleFactor);
}

TEST_F(ScanSchedule, AFaceOfTheRetryCounts) {
    // With so many hits asked for, only the finer steps gather enough.
    const Scene scene = FaceScene(160, 120, 50, 30, 48);
    for (g_minGroupMembers = 3; Scan(scene, 1.05F) == 0; ++g_minGroupMembers) ASSERT_LT(g_minGroupMembers, 10000);
    EXPECT_EQ(0, Run(scene, false)) << g_minGroupMembers << " members";
    EXPECT_EQ(1, g_detectorParams->passTag);
    EXPECT_GT(g_faceRecord.faceWidth, 0);
    EXPECT_EQ(10, Run(scene, true)) << "the quick pass has no retry";
}

TEST_F(ScanSchedule, AnErrorIsNotRetried) {
    EXPECT_EQ(-10, Run(BlankScene(19, 19), false));
    EXPECT_EQ(0, g_detectorParams->passTag);
}

TEST_F(ScanSchedule, EveryPassSetsItsSettings) {
    ASSERT_TRUE(ToImage(BlankScene(30, 30), g_sourceImage));
    g_detectorParams = std::make_unique<DetectorParams>();
    g_detectorParams->minFaceSize = 99;
    g_detectorParams->reservedSize = 99;
    g_detectorParams->pruneMode = 1;
    g_detectorParams->scaleFactor = 7.0F;
    EXPECT_EQ(10, RunDetection(true));
    EXPECT_EQ(1, g_detectorParams->minFaceSize) << "5 % of 30";
    EXPECT_EQ(0, g_detectorParams->reservedSize);
    EXPECT_EQ(4, g_detectorParams->pruneMode);
    EXPECT_EQ(1.09F, g_detectorParams->scaleFactor);
}

TEST_F(ScanSchedule, LinePruningKeepsTheWindowsOfTheOpenLines) {
    const Scene scene = FaceScene(100, 90, 20, 10, 60);
    Scan(scene, 1.09F, 0);
    const auto open = recorder_.Scales();
    g_pruneParameter = 1;
    for (int32 mode = 1; mode <= 3; ++mode) {
        recorder_.Forget();
        Scan(scene, 1.09F, mode);
        ASSERT_EQ(open.size(), recorder_.Scales().size());
        for (std::size_t i = 0; i < open.size(); ++i) {
            auto expected = open[i].mask;
            const auto [width, height] = open[i].positions;
            for (int32 y = 0; y < height; ++y) {
                for (int32 x = 0; x < width; ++x) {
                    const bool row = mode == 2 || height <= 1 || y % 2 == 1;
                    const bool column = mode == 1 || width <= 1 || x % 2 == 1;
                    if (!row || !column) expected[static_cast<std::size_t>(y * width + x)] = 0;
                }
            }
            EXPECT_TRUE(expected == recorder_.Scales()[i].mask) << "mode " << mode << ", scale " << i;
        }
    }
}

TEST_F(ScanSchedule, UnknownPruneModesPruneNothing) {
    const Scene scene = FaceScene(100, 90, 20, 10, 60);
    Scan(scene, 1.09F, 0);
    const auto open = recorder_.Scales();
    for (const int32 mode : {-1, 5, 99}) {
        recorder_.Forget();
        Scan(scene, 1.09F, mode);
        ASSERT_EQ(open.size(), recorder_.Scales().size());
        for (std::size_t i = 0; i < open.size(); ++i) EXPECT_TRUE(open[i].mask == recorder_.Scales()[i].mask);
    }
}

} // namespace
} // namespace orvane::test
