// The line that tells how far a run is.
#include "tools/batch/progress.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using std::chrono::milliseconds;

TEST(Progress, TellsDoneRateTimeLeftAndFailures) {
    EXPECT_EQ(ProgressText({100, 0, 0, 0, 0}, milliseconds(0), 80), "0 of 100, 0 failed");
    EXPECT_EQ(ProgressText({10000, 2500, 0, 3, 0}, milliseconds(500000), 80),
              "2500 of 10000, 5.0 a second, 0:25:00 left, 3 failed");
    EXPECT_EQ(ProgressText({3, 3, 0, 0, 1}, milliseconds(1500), 80),
              "3 of 3, 2.0 a second, 0:00:00 left, 1 without a face, 0 failed");
}

TEST(Progress, WhatWasKeptCountsForNoRate) {
    EXPECT_EQ(ProgressText({100, 60, 60, 0, 0}, milliseconds(1000), 80), "60 of 100, 0 failed");
    EXPECT_EQ(ProgressText({100, 70, 60, 0, 0}, milliseconds(5000), 80),
              "70 of 100, 2.0 a second, 0:00:15 left, 0 failed");
}

TEST(Progress, NeverFillsTheLastColumn) {
    for (const int width : {0, 1, 2, 10, 40}) {
        EXPECT_LE(ProgressText({10000, 2500, 0, 3, 0}, milliseconds(1), width).size(),
                  static_cast<std::size_t>(width > 1 ? width - 1 : 0));
    }
}

} // namespace
} // namespace orvane::tools
