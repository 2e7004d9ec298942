// Intervals of shares, against published values of Wilson's formula.
#include "tools/train/interval.h"

#include <gtest/gtest.h>

namespace orvane::train {
namespace {

TEST(WilsonInterval, HoldsTheShareAndWhatItMayBe) {
    const struct {
        int part, whole;
        double low, high;
    } cases[] = {{5, 10, 23.66, 76.34},
                 {0, 10, 0.0, 27.75},
                 {10, 10, 72.25, 100.0},
                 {1, 20, 0.89, 23.61},
                 {81, 263, 25.53, 36.62}};
    for (const auto& c : cases) {
        const Interval interval = WilsonInterval(c.part, c.whole);
        EXPECT_NEAR(interval.low, c.low, 0.005) << c.part << " of " << c.whole;
        EXPECT_NEAR(interval.high, c.high, 0.005) << c.part << " of " << c.whole;
    }
}

TEST(WilsonInterval, OfNoTrialsIsEverything) {
    EXPECT_EQ(WilsonInterval(0, 0).low, 0.0);
    EXPECT_EQ(WilsonInterval(0, 0).high, 100.0);
}

} // namespace
} // namespace orvane::train
