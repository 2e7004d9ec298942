// Boosting finds what separates, whatever the number of threads; thresholds keep the share they promise.
#include "tools/train/boosting.h"

#include "tests/train/samples.h"
#include "tools/train/threshold.h"

#include <gtest/gtest.h>

namespace orvane::train {
namespace {

constexpr ImageSize kWindow{12, 12};

/// Noise, brighter in the upper half for faces.
std::vector<Patch> NoisyHalves(int faces, int others, int contrast) {
    std::vector<Patch> patches;
    Random random({5});
    for (int n = 0; n < faces + others; ++n) {
        Window window = RandomWindow(kWindow, random);
        for (std::size_t i = 0; i < window.size(); ++i) {
            const bool upper = i >= window.size() / 2;
            window[i] = static_cast<uint8>(window[i] / 2 + (n < faces && upper ? contrast : 0));
        }
        patches.emplace_back(window.data(), kWindow);
    }
    return patches;
}

std::vector<std::uint32_t> All(std::size_t count) {
    std::vector<std::uint32_t> all(count);
    for (std::size_t i = 0; i < count; ++i) all[i] = static_cast<std::uint32_t>(i);
    return all;
}

TEST(Boosting, TheFirstStumpSeparatesWhatOneFeatureCanSeparate) {
    const std::vector<Patch> patches = NoisyHalves(200, 300, 120);
    const std::vector<Feature> pool = MakeFeaturePool(kWindow, 800, 2);
    const float norm = AreaNorm(kWindow);
    const QuantisedValues values(pool, patches, norm, 1);
    Booster booster(pool, values, 200, 1);
    const Stump stump = booster.AddStump(All(pool.size()));
    int wrong = 0;
    for (std::size_t s = 0; s < patches.size(); ++s) {
        const bool below =
            patches[s].Measure(stump.feature, norm) < static_cast<double>(stump.threshold) * patches[s].Deviation();
        const float value = below ? stump.below : stump.above;
        if ((value > 0.0f) != (s < 200)) ++wrong;
    }
    EXPECT_LE(wrong, 5);
    EXPECT_LT(stump.below * stump.above, 0.0f);
}

TEST(Boosting, TheStumpsDoNotDependOnTheThreads) {
    const std::vector<Patch> patches = NoisyHalves(150, 150, 15);
    const std::vector<Feature> pool = MakeFeaturePool(kWindow, 500, 2);
    const auto stumps = [&](int threads) {
        const QuantisedValues values(pool, patches, AreaNorm(kWindow), threads);
        Booster booster(pool, values, 150, threads);
        std::vector<float> numbers;
        for (int i = 0; i < 8; ++i) {
            const Stump s = booster.AddStump(All(pool.size()));
            numbers.insert(numbers.end(), {s.threshold, s.below, s.above});
        }
        return numbers;
    };
    EXPECT_EQ(stumps(1), stumps(3));
}

TEST(Boosting, EarlierScoresAreGoneOnFrom) {
    // What is known already decides: the stump turns to the samples that the earlier scores have wrong.
    const std::vector<Patch> patches = NoisyHalves(100, 100, 120);
    const std::vector<Feature> pool = MakeFeaturePool(kWindow, 300, 2);
    const QuantisedValues values(pool, patches, AreaNorm(kWindow), 1);
    std::vector<double> earlier(200);
    for (std::size_t s = 0; s < 200; ++s) earlier[s] = (s < 100 ? 1.0 : -1.0) * (s % 10 == 0 ? -3.0 : 3.0);
    Booster fresh(pool, values, 100, 1);
    Booster informed(pool, values, 100, 1, earlier);
    const Stump without = fresh.AddStump(All(pool.size()));
    const Stump with = informed.AddStump(All(pool.size()));
    EXPECT_GT(std::abs(with.above - with.below), std::abs(without.above - without.below))
        << "scores of 3 deserve less trust, so new values count more in their unit";
}

TEST(QuantisedFeatures, ABinHoldsTheValuesBetweenItsEdges) {
    const std::vector<Patch> patches = NoisyHalves(60, 60, 40);
    const std::vector<Feature> pool = MakeFeaturePool(kWindow, 50, 4);
    const float norm = AreaNorm(kWindow);
    const QuantisedValues values(pool, patches, norm, 2);
    for (std::size_t f = 0; f < pool.size(); ++f) {
        for (std::size_t s = 0; s < patches.size(); ++s) {
            const double value = patches[s].Measure(pool[f], norm) / patches[s].Deviation();
            const int bin = values.Row(f)[s];
            EXPECT_TRUE(bin == 0 || value >= values.Edge(f, bin) - 1e-4) << value << " in bin " << bin;
            EXPECT_TRUE(bin == 255 || value <= values.Edge(f, bin + 1) + 1e-4) << value << " in bin " << bin;
        }
    }
}

TEST(StageThreshold, KeepsTheWantedShareOfFaces) {
    std::vector<double> sums;
    for (int i = 999; i >= 0; --i) sums.push_back(i);
    EXPECT_EQ(LeastSumFor(sums, 1.0), 0.0);
    EXPECT_EQ(LeastSumFor(sums, 0.75), 250.0);
    EXPECT_EQ(ShareAtLeast(sums, 0, sums.size(), 100.0), 0.9);
    EXPECT_EQ(ShareAtLeast(sums, 500, 1000, 100.0), 0.8);
    EXPECT_EQ(ShareAtLeast(sums, 3, 3, 0.0), 0.0);
    EXPECT_EQ(LeastSumFor({4.0}, 0.5), 4.0);
    for (const double rate : {0.9, 0.95, 0.99, 0.997}) {
        const double kept = ShareAtLeast(sums, 0, sums.size(), LeastSumFor(sums, rate));
        EXPECT_GE(kept, rate);
        EXPECT_LE(kept, rate + 0.0011);
    }
}

TEST(StageThreshold, LetsItsOwnSumPassAfterTheBias) {
    Random random({17});
    for (int i = 0; i < 2000; ++i) {
        const double sum = random.Between(-20.0, 20.0);
        const float threshold = FileThreshold(sum);
        const float inDetector = threshold - kThresholdBias;
        EXPECT_FALSE(sum < inDetector) << sum;
        EXPECT_NEAR(inDetector, sum, 1e-5) << sum;
    }
}

} // namespace
} // namespace orvane::train
