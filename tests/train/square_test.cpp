// The measures of a face's place.
#include "tools/train/square.h"

#include <gtest/gtest.h>

namespace orvane::train {
namespace {

TEST(SquareMapping, KeepsTheCentreAndLetsTheSideGrow) {
    const FaceSquare mapped = Map({10, 20, 40}, {1.25, 0.0});
    EXPECT_EQ(mapped.side, 50.0);
    EXPECT_EQ(mapped.x, 5.0);
    EXPECT_EQ(mapped.y, 15.0);
    EXPECT_EQ(Map({0, 0, 10}, {1.0, 0.5}).y, 5.0);
}

TEST(SquareOverlap, IsIntersectionOverUnion) {
    EXPECT_EQ(OverlapOf({0, 0, 10}, {0, 0, 10}), 1.0);
    EXPECT_EQ(OverlapOf({0, 0, 10}, {10, 0, 10}), 0.0);
    EXPECT_EQ(OverlapOf({0, 0, 0}, {0, 0, 0}), 0.0);
    EXPECT_DOUBLE_EQ(OverlapOf({0, 0, 10}, {5, 0, 10}), 50.0 / 150.0);
    EXPECT_DOUBLE_EQ(OverlapOf({0, 0, 10}, {0, 0, 20}), 0.25);
}

TEST(RightPlace, IsJudgedByTheMappedSquare) {
    EXPECT_TRUE(IsRight({10, 10, 10}, {5, 5, 20}, {2.0, 0.0}));
    EXPECT_FALSE(IsRight({10, 10, 10}, {5, 5, 20}, {1.0, 0.0})) << "a quarter of the annotated square";
    EXPECT_FALSE(IsRight({10, 10, 10}, {5, 5, 20}, {2.0, 1.0})) << "half of it, a third of both";
}

TEST(RightPlace, BeginsAtHalfOfTheUnion) {
    EXPECT_TRUE(IsRight({0, 0, 12}, {4, 0, 12}, {1.0, 0.0})) << "8 of 16 columns";
    EXPECT_FALSE(IsRight({0, 0, 12}, {4.01, 0, 12}, {1.0, 0.0}));
}

} // namespace
} // namespace orvane::train
