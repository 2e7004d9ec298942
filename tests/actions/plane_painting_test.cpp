// Rectangles painted into a plane, wherever they lie.
#include "actions/plane_painting.h"

#include "tests/support/pictures.h"
#include "tests/support/portrait.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

constexpr int64 kFar = int64{1} << 33;

TEST(PlanePainting, SetsWhatLiesInThePlaneAndNothingElse) {
    const PaintedRect rects[] = {
        {2, 1, 3, 4},    {0, 0, 9, 7},     {-2, -3, 5, 5},  {7, 5, 9, 9}, {-kFar, -kFar, 2 * kFar, 2 * kFar},
        {-5, 2, 5, 2},   {9, 2, 5, 2},     {3, -4, 2, 4},   {3, 7, 2, 4}, {kFar, 0, 4, 4},
        {4, 3, kFar, 1}, {-kFar, 0, 5, 5}, {-1, 6, 100, 1}, {8, 6, 1, 1},
    };
    for (const PaintedRect& r : rects) {
        ImageBuffer plane, before;
        test::MakeRandomPicture(plane, 9, 7, 1, 1);
        before.CopyFrom(plane);
        EXPECT_EQ(PaintRect(plane, r, 200), kOk);
        for (int32 y = 0; y < 7; ++y) {
            for (int32 x = 0; x < 9; ++x) {
                const bool inside = x >= r.x && x < r.x + r.width && y >= r.y && y < r.y + r.height;
                ASSERT_EQ(+*test::PixelAt(plane, x, y), inside ? 200 : +*test::PixelAt(before, x, y))
                    << x << ", " << y << " for " << r.width << " by " << r.height << " at " << r.x << ", " << r.y;
            }
        }
    }
}

TEST(PlanePainting, RefusesWhatIsEmpty) {
    ImageBuffer plane, before;
    EXPECT_EQ(PaintRect(plane, {0, 0, 0, 0}, 1), kNullPointer);
    test::MakeRandomPicture(plane, 9, 7, 1, 1);
    before.CopyFrom(plane);
    for (const PaintedRect& r :
         {PaintedRect{1, 1, 0, 3}, PaintedRect{1, 1, 3, 0}, PaintedRect{1, 1, -3, 3}, PaintedRect{50, 50, 3, -3}}) {
        EXPECT_EQ(PaintRect(plane, r, 200), kBadSize);
    }
    EXPECT_SAME_PICTURE(plane, before);
}

} // namespace
} // namespace orvane
