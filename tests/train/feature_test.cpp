// Features measure what the detector's stages measure, and the pool holds what it promises.
#include "tools/train/feature.h"

#include "primitives/primitives.h"
#include "tests/train/samples.h"
#include "tools/train/cascade.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvane::train {
namespace {

constexpr ImageSize kWindow{24, 24};

/// Whether a stage object of one stump, as the detector builds it, lets a window through that needs `above`.
bool DetectorTakesAbove(const Stump& stump, const Window& window) {
    const float norm = AreaNorm(kWindow);
    std::vector<ImageRect> rects;
    std::vector<float> weights;
    for (std::size_t i = 0; i < static_cast<std::size_t>(stump.feature.rectCount); ++i) {
        rects.push_back(stump.feature.rects[i]);
        weights.push_back(stump.feature.weights[i] * norm);
    }
    const int32 step = 4 * (kWindow.width + 1);
    std::vector<float> sum(25 * 25);
    std::vector<double> squares(25 * 25);
    primSqrIntegral_8u32f64f_C1(window.data(), kWindow.width, sum.data(), step, squares.data(), 2 * step, kWindow,
                                -16777216.0f, 0.0);
    float deviation = 0.0f;
    primRectStdDev_32f_C1(sum.data(), step, squares.data(), 2 * step, &deviation, 4, {1, 1}, {1, 1, 22, 22});
    HaarClassifier* stage = nullptr;
    const int32 count = stump.feature.rectCount;
    EXPECT_EQ(primHaarClassifierInitAlloc_32f(&stage, rects.data(), weights.data(), &stump.threshold, &stump.below,
                                              &stump.above, &count, 1),
              0);
    uint8 mask = 255;
    int32 positive = 1;
    EXPECT_EQ(primApplyHaarClassifier_32f_C1(sum.data(), step, &deviation, 4, &mask, 1, {1, 1}, &positive, stump.above,
                                             stage),
              0);
    primHaarClassifierFree_32f(stage);
    return mask != 0;
}

TEST(Feature, AStumpDecidesAsTheDetectorsStageAlsoAtTheVeryThreshold) {
    const std::vector<Feature> pool = MakeFeaturePool(kWindow, 400, 7);
    Random random({1});
    for (const Feature& feature : pool) {
        const Window window = RandomWindow(kWindow, random);
        const Patch patch(window.data(), kWindow);
        const float norm = AreaNorm(kWindow);
        const auto tie = static_cast<float>(patch.Measure(feature, norm) / patch.Deviation());
        for (const float threshold : {tie, std::nextafter(tie, 1e9f), std::nextafter(tie, -1e9f), 0.0f}) {
            const Stump stump{feature, threshold, -1.0f, 1.0f};
            const bool above = !(patch.Measure(feature, norm) < static_cast<double>(threshold) * patch.Deviation());
            EXPECT_EQ(above, DetectorTakesAbove(stump, window)) << "threshold " << threshold;
        }
    }
}

TEST(Feature, TheDeviationIsTheOneInsideABorderOfOne) {
    Window window(24 * 24, 100);
    for (int32 i = 0; i < 24; ++i) {
        window[static_cast<std::size_t>(i)] = 255;
        window[static_cast<std::size_t>(24 * i)] = 0;
    }
    EXPECT_EQ(Patch(window.data(), kWindow).Deviation(), 0.0f);
}

TEST(Feature, AFlatWindowMeasuresNothing) {
    const Window window(24 * 24, 77);
    const Patch patch(window.data(), kWindow);
    for (const Feature& feature : MakeFeaturePool(kWindow, 500, 3)) {
        EXPECT_NEAR(patch.Measure(feature, AreaNorm(kWindow)), 0.0, 1e-4);
    }
}

TEST(FeaturePool, LiesInTheWindowWithTwoToFourRectanglesOfNoWeightInAll) {
    const std::vector<Feature> pool = MakeFeaturePool(kWindow, 2000, 5);
    ASSERT_EQ(pool.size(), 2000u);
    int seen[kMaxRects + 1] = {};
    for (const Feature& feature : pool) {
        ASSERT_GE(feature.rectCount, 2);
        ASSERT_LE(feature.rectCount, kMaxRects);
        ++seen[feature.rectCount];
        double weight = 0.0;
        for (std::size_t i = 0; i < static_cast<std::size_t>(feature.rectCount); ++i) {
            const ImageRect& r = feature.rects[i];
            EXPECT_GE(r.x, 0);
            EXPECT_GE(r.y, 0);
            EXPECT_LE(r.x + r.width, kWindow.width);
            EXPECT_LE(r.y + r.height, kWindow.height);
            weight += static_cast<double>(feature.weights[i]) * r.width * r.height;
        }
        EXPECT_EQ(weight, 0.0);
    }
    for (const int rects : {2, 3, 4}) EXPECT_GT(seen[rects], 0) << rects << " rectangles";
}

TEST(FeaturePool, IsTheSameForTheSameSeedAndAnotherForAnother) {
    const auto places = [](uint64 seed) {
        std::vector<int32> numbers;
        for (const Feature& f : MakeFeaturePool(kWindow, 300, seed)) {
            for (const ImageRect& r : f.rects) numbers.insert(numbers.end(), {r.x, r.y, r.width, r.height});
        }
        return numbers;
    };
    EXPECT_EQ(places(11), places(11));
    EXPECT_NE(places(11), places(12));
}

TEST(FeaturePool, ASmallWindowGivesAsManyAsThereAre) {
    EXPECT_LT(MakeFeaturePool({4, 4}, 1000000 / 1000, 1).size(), 1000u);
}

} // namespace
} // namespace orvane::train
