// Rectangles for a window: each living window pays for the whole of the next stage, or for what is new in it.
#include "tools/train/work.h"

#include "detect/classifier_file.h"

#include <gtest/gtest.h>

namespace orvane::train {
namespace {

class Work : public testing::Test {
protected:
    void SetUp() override {
        // The second stage is chained to the first, the third stands alone.
        g_classifier = {};
        g_classifier.stageClassifierStart = {0, 0, 3};
        g_classifier.stageClassifierCount = {1, 3, 2};
        g_classifier.classifierFeatureCount = {2, 3, 4, 2, 2};
    }
    void TearDown() override { g_classifier = {}; }

    static ImageBuffer MaskOf(int32 open) {
        ImageBuffer mask;
        EXPECT_TRUE(mask.Create(30, 20, 1, kDepth8u, 0));
        for (int32 i = 0; i < open; ++i) RowAt(mask.data, mask.Step(), i / 30)[i % 30] = 255;
        return mask;
    }
};

TEST_F(Work, CountsStageByStageAndInOneGo) {
    WorkCounter work;
    work.OnPruned(MaskOf(100), {30, 20});
    work.OnStage(0, MaskOf(40));
    work.OnStage(1, MaskOf(10));
    work.OnStage(2, MaskOf(1));
    EXPECT_DOUBLE_EQ(work.RectsByStages(), (100 * 2 + 40 * 9 + 10 * 4) / 100.0);
    EXPECT_DOUBLE_EQ(work.RectsInOneGo(), (100 * 2 + 40 * 7 + 10 * 4) / 100.0);
}

TEST_F(Work, AddsUpOverScales) {
    WorkCounter work;
    for (int scale = 0; scale < 3; ++scale) {
        work.OnPruned(MaskOf(50), {30, 20});
        work.OnStage(0, MaskOf(0));
    }
    work.OnPruned(MaskOf(50), {30, 20});
    work.OnStage(0, MaskOf(50));
    work.OnStage(1, MaskOf(0));
    EXPECT_DOUBLE_EQ(work.RectsByStages(), (200 * 2 + 50 * 9) / 200.0);
    EXPECT_DOUBLE_EQ(work.RectsInOneGo(), (200 * 2 + 50 * 7) / 200.0);
}

TEST_F(Work, IsNothingWithoutWindows) {
    WorkCounter work;
    EXPECT_EQ(work.RectsByStages(), 0.0);
    EXPECT_EQ(work.RectsInOneGo(), 0.0);
}

} // namespace
} // namespace orvane::train
