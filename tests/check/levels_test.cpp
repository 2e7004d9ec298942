// Shares of levels, which are exact, and the levels below which a share lies.
#include "tools/check/levels.h"

#include "tests/check/drawn_picture.h"

namespace orvane::tools {
namespace {

TEST(LevelCounts, SharesAreExact) {
    LevelCounts counts;
    counts.Add({4, 2, {0, 5, 6, 100, 249, 250, 255, 255}});
    EXPECT_EQ(counts.Pixels(), 8);
    EXPECT_EQ(counts.PercentUpTo(kLostShadow), 25);
    EXPECT_EQ(counts.PercentFrom(kBurntOut), 37.5);
    EXPECT_EQ(counts.PercentUpTo(255), 100);
    EXPECT_EQ(counts.PercentFrom(0), 100);
}

TEST(LevelCounts, OfPartsCountTogether) {
    LevelCounts counts;
    counts.Add({1, 1, {3}});
    counts.Add({3, 1, {200, 200, 200}});
    EXPECT_EQ(counts.PercentUpTo(kLostShadow), 25);
}

TEST(LevelCounts, APercentileIsTheLeastLevelThatReachesIt) {
    LevelCounts ramp;
    for (int level = 0; level < 100; ++level) ramp.Add({1, 1, {static_cast<uint8>(level)}});
    EXPECT_EQ(ramp.Percentile(5), 4);
    EXPECT_EQ(ramp.Percentile(50), 49);
    EXPECT_EQ(ramp.Percentile(95), 94);
    EXPECT_EQ(ramp.Percentile(100), 99);
}

TEST(LevelCounts, OfNothingAreZero) {
    const LevelCounts none;
    EXPECT_EQ(none.PercentUpTo(255), 0);
    EXPECT_EQ(none.PercentFrom(0), 0);
    EXPECT_EQ(none.Percentile(50), 0);
}

} // namespace
} // namespace orvane::tools
