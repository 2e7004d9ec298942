// The classifier file that the trainer writes is the one that the detector reads.
#include "tools/train/cascade.h"

#include "detect/classifier_file.h"
#include "tests/train/samples.h"
#include "tools/train/scan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace orvane::train {
namespace {

constexpr ImageSize kWindow{24, 24};

Cascade RandomCascade(bool chained) {
    Cascade cascade;
    const std::vector<Feature> pool = MakeFeaturePool(kWindow, 60, 21);
    Random random({3});
    std::size_t next = 0;
    for (int s = 0; s < 3; ++s) {
        Stage stage{static_cast<float>(random.Between(-1.0, 0.0)), chained && s > 0, {}};
        for (int i = 0; i < 10 + 5 * s; ++i) {
            stage.stumps.push_back({pool[next++], static_cast<float>(random.Between(-0.3, 0.3)),
                                    static_cast<float>(random.Between(-1.0, 1.0)),
                                    static_cast<float>(random.Between(-1.0, 1.0))});
        }
        cascade.stages.push_back(stage);
    }
    return cascade;
}

/// A cascade of one stump with the given rectangles.
Cascade OneStump(ImageRect first, ImageRect second) {
    Feature feature;
    feature.rectCount = 2;
    feature.rects = {first, second};
    feature.weights = {1.0f, -1.0f};
    return {kWindow, {{0.0f, false, {{feature, 0.0f, -1.0f, 1.0f}}}}};
}

class CascadeFile : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(SeparateAndChained, CascadeFile, testing::Bool());

TEST_P(CascadeFile, ReadsBackAsItWasWritten) {
    const Cascade cascade = RandomCascade(GetParam());
    const std::vector<uint8> bytes = ToFile(cascade);
    Cascade read;
    ASSERT_TRUE(FromFile(bytes, read));
    EXPECT_EQ(ToFile(read), bytes);
    ASSERT_EQ(read.stages.size(), 3u);
    EXPECT_EQ(read.stages[2].chained, GetParam());
    EXPECT_EQ(read.stages[2].stumps.size(), 20u);
    EXPECT_EQ(read.stages[1].stumps[4].feature.rects[0].y, cascade.stages[1].stumps[4].feature.rects[0].y);
}

TEST_P(CascadeFile, HasTheLengthThatItsCountsGive) {
    const Cascade cascade = RandomCascade(GetParam());
    std::size_t stumps = 0;
    std::size_t rects = 0;
    for (const Stage& stage : cascade.stages) {
        stumps += stage.stumps.size();
        for (const Stump& stump : stage.stumps) rects += static_cast<std::size_t>(stump.feature.rectCount);
    }
    EXPECT_EQ(ToFile(cascade).size(), 20 + 20 * 3 + 16 * stumps + 20 * rects);
}

TEST_P(CascadeFile, IsTakenByTheDetectorWithTheSameStages) {
    const std::string folder = testing::TempDir() + "orvane_cascade_test";
    std::filesystem::create_directories(folder);
    const Cascade cascade = RandomCascade(GetParam());
    ASSERT_TRUE(WriteFile(folder + "/made.dat", ToFile(cascade)));
    g_moduleFolder = std::filesystem::path(folder).native();
    ClassifierTables tables;
    const int32 status = ReadClassifierFile(std::filesystem::path("made.dat").native(), tables);
    std::filesystem::remove_all(folder);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(PrepareClassifier(1, 0.0001f, tables), 0);
    ASSERT_EQ(MakeStages(tables), 0);
    ASSERT_EQ(tables.stageCount, 3);

    // Every stage decides every window alike: the detector's object, and the trainer's sum against the threshold.
    const Evaluator evaluator(cascade);
    Random random({8});
    for (int n = 0; n < 300; ++n) {
        const Window window = RandomWindow(kWindow, random);
        const Patch patch(window.data(), kWindow);
        std::vector<float> sum(25 * 25);
        std::vector<double> squares(25 * 25);
        primSqrIntegral_8u32f64f_C1(window.data(), 24, sum.data(), 100, squares.data(), 200, kWindow, -16777216.0f,
                                    0.0);
        float deviation = patch.Deviation();
        for (std::size_t s = 0; s < 3; ++s) {
            // The nearest floats on both sides of the sum: the detector's sum lies between them as well.
            const double expected = evaluator.StageSum(s, patch);
            auto under = static_cast<float>(expected);
            if (under > expected) under = std::nextafter(under, -1e9f);
            for (const auto& [threshold, passes] : {std::pair{under, true}, {std::nextafter(under, 1e9f), false}}) {
                uint8 mask = 255;
                int32 positive = 1;
                primApplyHaarClassifier_32f_C1(sum.data(), 100, &deviation, 4, &mask, 1, {1, 1}, &positive, threshold,
                                               tables.stageObject[s].get());
                ASSERT_EQ(mask != 0, passes) << "stage " << s << " sum " << expected << " threshold " << threshold;
            }
            EXPECT_EQ(tables.stageThreshold[s], cascade.stages[s].threshold - kThresholdBias);
        }
    }
    FreeClassifier(tables);
}

TEST(CascadeFileContent, CountsRowsFromTheWindowsTop) {
    const std::vector<uint8> bytes = ToFile(OneStump({1, 2, 3, 4}, {5, 6, 7, 8}));
    const std::size_t rects = 20 + 20 + 16;
    EXPECT_EQ(bytes[rects + 4], 24 - 4 - 2);
    EXPECT_EQ(bytes[rects + 16 + 4], 24 - 8 - 6);
}

TEST(CascadeFileContent, AChainedStageBeginsWhereItsChainBegan) {
    const std::vector<uint8> bytes = ToFile(RandomCascade(true));
    const auto word = [&](std::size_t at) { return bytes[at] | bytes[at + 1] << 8; };
    for (std::size_t s = 0; s < 3; ++s) {
        EXPECT_EQ(word(20 + 36 + 4 * s), 0) << "first classifier of stage " << s;
        EXPECT_EQ(word(20 + 48 + 4 * s), 0) << "first rectangle of stage " << s;
    }
    EXPECT_EQ(word(20 + 12), 10);
    EXPECT_EQ(word(20 + 16), 25);
    EXPECT_EQ(word(20 + 20), 45);
}

TEST(CascadeFileContent, WhatIsNotWholeIsRefused) {
    const std::vector<uint8> good = ToFile(RandomCascade(false));
    Cascade read;
    for (const std::size_t length : {std::size_t{0}, std::size_t{19}, std::size_t{60}, good.size() - 1}) {
        EXPECT_FALSE(FromFile({good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)}, read)) << length;
    }
    std::vector<uint8> longer = good;
    longer.push_back(0);
    EXPECT_FALSE(FromFile(longer, read));
    std::vector<uint8> negative = good;
    negative[11] = 0x80; // stages
    EXPECT_FALSE(FromFile(negative, read));
    std::vector<uint8> manyRects = good;
    manyRects[20 + 60] = 9; // rectangles of the first classifier
    EXPECT_FALSE(FromFile(manyRects, read));
    EXPECT_TRUE(read.stages.empty());
}

TEST(CascadeFault, NamesWhatTheDetectorWouldRefuse) {
    EXPECT_EQ(FindFault(OneStump({0, 0, 24, 24}, {0, 0, 4, 4})), "");
    EXPECT_EQ(FindFault(OneStump({20, 0, 4, 4}, {0, 20, 4, 4})), "");
    EXPECT_EQ(FindFault(OneStump({0, 0, 23, 24}, {0, 0, 4, 4})), "no rectangle reaches the window's last column");
    EXPECT_EQ(FindFault(OneStump({0, 0, 24, 23}, {0, 0, 4, 4})), "no rectangle reaches the window's last row");
    EXPECT_EQ(FindFault(OneStump({1, 0, 24, 24}, {0, 0, 4, 4})), "a rectangle outside the window");
    EXPECT_EQ(FindFault(OneStump({0, 0, 24, 24}, {0, -1, 4, 4})), "a rectangle outside the window");
    EXPECT_EQ(FindFault({kWindow, {}}), "no stages");
    EXPECT_EQ(FindFault({kWindow, {Stage{}}}), "a stage without classifiers");
}

TEST(WholeFiles, AFailedWriteLeavesNothingBehind) {
    const std::string folder = testing::TempDir() + "orvane_no_such_folder";
    EXPECT_FALSE(WriteFile(folder + "/a.dat", {1, 2, 3}));
    EXPECT_FALSE(std::filesystem::exists(folder));
    std::vector<uint8> bytes;
    EXPECT_FALSE(ReadFile(folder + "/a.dat", bytes));
}

} // namespace
} // namespace orvane::train
