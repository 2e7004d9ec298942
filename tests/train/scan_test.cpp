// Negatives are harvested where the detector looks, and nowhere else.
#include "tools/train/scan.h"

#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "detect/window_cascade.h"
#include "image/session_images.h"
#include "tests/train/samples.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace orvane::train {
namespace {

/// A cascade of one stage that takes dark eyes above a bright middle, weakly enough to leave many windows.
Cascade LooseCascade() {
    Feature eyes;
    eyes.rectCount = 2;
    eyes.rects = {ImageRect{0, 0, 24, 24}, ImageRect{6, 13, 12, 6}};
    eyes.weights = {-1.0f, 8.0f};
    return {{24, 24}, {{0.5f, false, {{eyes, -0.4f, 1.0f, -1.0f}}}}};
}

void LoadIntoDetector(const Cascade& cascade, const GreyPicture& picture) {
    const std::string folder = testing::TempDir() + "orvane_scan_test";
    std::filesystem::create_directories(folder);
    ASSERT_TRUE(WriteFile(folder + "/Orvane.dat", ToFile(cascade)));
    g_moduleFolder = std::filesystem::path(folder).native();
    FreeClassifier(g_classifier);
    g_detectorParams = std::make_unique<DetectorParams>();
    g_detectorParams->loadStatus = LoadClassifier();
    std::filesystem::remove_all(folder);
    ASSERT_EQ(g_detectorParams->loadStatus, 0);
    ASSERT_TRUE(g_sourceImage.Create(picture.size.width, picture.size.height, 3, kDepth8u, 0));
    for (int32 y = 0; y < picture.size.height; ++y) {
        for (int32 x = 0; x < picture.size.width; ++x) {
            uint8* pixel = RowAt(g_sourceImage.data, g_sourceImage.Step(), y) + 3 * x;
            pixel[0] = pixel[1] = pixel[2] = picture.pixels[static_cast<std::size_t>(y * picture.size.width + x)];
        }
    }
}

class ScanOfSize : public testing::TestWithParam<ImageSize> {};
INSTANTIATE_TEST_SUITE_P(WidthsAroundTheLimits, ScanOfSize,
                         testing::Values(ImageSize{90, 120}, ImageSize{351, 200}, ImageSize{352, 260},
                                         ImageSize{499, 300}, ImageSize{640, 200}));

TEST_P(ScanOfSize, SurvivorsGroupToTheFaceThatTheDetectorReports) {
    GreyPicture picture = MadeUpPicture(GetParam(), 3);
    PaintFace(picture, GetParam().width / 3, GetParam().height / 4, GetParam().height / 2);
    const Cascade cascade = LooseCascade();
    ASSERT_NO_FATAL_FAILURE(LoadIntoDetector(cascade, picture));
    ASSERT_EQ(RunDetection(false), 0);
    const FaceRecord reported = g_faceRecord;

    CandidateList candidates;
    std::size_t survivors = 0;
    VisitSurvivors(picture, CompiledCascade(cascade), {}, [&](const Survivor& s) {
        ++survivors;
        candidates.Place({static_cast<int32>(s.x + s.side / 2 + 1e-6), static_cast<int32>(s.y + s.side / 2 + 1e-6),
                          static_cast<int32>(s.side + 1e-6)});
    });
    FaceRecord record;
    int32 found = 0;
    GroupCandidates(candidates, &record, &found);
    ASSERT_GT(found, 0);
    EXPECT_NEAR(record.centreX, reported.centreX, 1);
    EXPECT_NEAR(record.centreY, reported.centreY, 1);
    EXPECT_NEAR(record.faceWidth, reported.faceWidth, 1);
    FreeClassifier(g_classifier);
}

TEST(Scan, PartialChoicesOfScalesMakeTheWhole) {
    const GreyPicture picture = MadeUpPicture({200, 160}, 4);
    const CompiledCascade cascade(LooseCascade());
    const auto count = [&](const ScaleChoice& choice) {
        std::size_t n = 0;
        VisitSurvivors(picture, cascade, choice, [&](const Survivor&) { ++n; });
        return n;
    };
    const std::size_t whole = count({});
    EXPECT_GT(whole, 0u);
    EXPECT_EQ(count({1.0, 3, 0}) + count({1.0, 3, 1}) + count({1.0, 3, 2}), whole);
}

TEST(Scan, FindsTheSameInOneGoAsStepByStep) {
    const auto survivorsOf = [](const GreyPicture& picture, const Cascade& cascade, bool inOneGo) {
        const CompiledCascade compiled(cascade);
        EXPECT_EQ(WindowCascade::Serves(compiled.Tables(), {300, 300}), inOneGo);
        std::vector<std::vector<double>> survivors;
        VisitSurvivors(picture, compiled, {1.02, 2, 1}, [&](const Survivor& s) {
            survivors.push_back({s.x, s.y, s.side});
            for (int32 y = 0; y < 24; ++y)
                for (int32 x = 0; x < 24; ++x) survivors.back().push_back(RowAt(s.pixels, s.step, y)[x]);
        });
        return survivors;
    };
    // A value that no sum notices, and that cannot be planned.
    Cascade unplanned = LooseCascade();
    unplanned.stages[0].stumps.push_back(unplanned.stages[0].stumps[0]);
    unplanned.stages[0].stumps[1].below = unplanned.stages[0].stumps[1].above = 1e-20F;
    for (uint64 seed = 0; seed < 4; ++seed) {
        const GreyPicture picture = MadeUpPicture({352 + static_cast<int32>(9 * seed), 260}, seed);
        const auto survivors = survivorsOf(picture, LooseCascade(), true);
        EXPECT_GT(survivors.size(), 50u);
        EXPECT_EQ(survivors, survivorsOf(picture, unplanned, false));
    }
}

TEST(Scan, AFlatPictureHasNoEdgesAndNoSurvivors) {
    const GreyPicture flat{{120, 90}, std::vector<uint8>(120 * 90, 99)};
    VisitSurvivors(flat, CompiledCascade(Cascade{}), {}, [&](const Survivor&) { FAIL(); });
}

TEST(Scan, APictureTooSmallForTheWindowIsPassedOver) {
    const GreyPicture small = MadeUpPicture({28, 28}, 1);
    VisitSurvivors(small, CompiledCascade(Cascade{}), {}, [&](const Survivor&) { FAIL(); });
}

TEST(TurnedPicture, FourQuarterTurnsAreNone) {
    const GreyPicture picture = MadeUpPicture({31, 17}, 2);
    GreyPicture turned = picture;
    for (int i = 0; i < 4; ++i) turned = Turned(turned, 1, false);
    EXPECT_EQ(turned.pixels, picture.pixels);
    EXPECT_EQ(Turned(Turned(picture, 1, false), 1, false).pixels, Turned(picture, 2, false).pixels);
    EXPECT_EQ(Turned(Turned(picture, 2, false), 1, false).pixels, Turned(picture, 3, false).pixels);
    EXPECT_EQ(Turned(Turned(picture, 0, true), 0, true).pixels, picture.pixels);
    EXPECT_EQ(Turned(picture, 1, true).size.width, 17);
}

} // namespace
} // namespace orvane::train
