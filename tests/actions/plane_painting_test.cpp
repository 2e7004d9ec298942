// Rectangles painted into a plane, wherever they lie.
#include "actions/plane_painting.h"

#include "tests/support/bit_planes.h"
#include "tests/support/pictures.h"
#include "tests/support/portrait.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

constexpr int64 kFar = int64{1} << 33;

constexpr PaintedRect kRects[] = {
    {2, 1, 3, 4},    {0, 0, 9, 7},     {-2, -3, 5, 5},  {7, 5, 9, 9}, {-kFar, -kFar, 2 * kFar, 2 * kFar},
    {-5, 2, 5, 2},   {9, 2, 5, 2},     {3, -4, 2, 4},   {3, 7, 2, 4}, {kFar, 0, 4, 4},
    {4, 3, kFar, 1}, {-kFar, 0, 5, 5}, {-1, 6, 100, 1}, {8, 6, 1, 1},
};

bool Holds(const PaintedRect& r, int32 x, int32 y) {
    return x >= r.x && x < r.x + r.width && y >= r.y && y < r.y + r.height;
}

TEST(PlanePainting, SetsWhatLiesInThePlaneAndNothingElse) {
    for (const PaintedRect& r : kRects) {
        ImageBuffer plane, before;
        test::MakeRandomPicture(plane, 9, 7, 1, 1);
        before.CopyFrom(plane);
        EXPECT_EQ(PaintRect(plane, r, 200), kOk);
        for (int32 y = 0; y < 7; ++y) {
            for (int32 x = 0; x < 9; ++x) {
                ASSERT_EQ(+*test::PixelAt(plane, x, y), Holds(r, x, y) ? 200 : +*test::PixelAt(before, x, y))
                    << x << ", " << y << " for " << r.width << " by " << r.height << " at " << r.x << ", " << r.y;
            }
        }
    }
}

TEST(PlanePainting, MarksWhatLiesInThePlaneAndLeavesTheOtherMarks) {
    const auto before = [](int32 x, int32 y) { return (x + y) % 3 == 0; };
    const auto expectMarked = [&](ImageSize size, const PaintedRect& r) {
        BitPlane plane;
        test::MakeBitPlane(plane, size, before);
        EXPECT_EQ(MarkRect(plane, r), kOk);
        EXPECT_TRUE(test::IsMarkedWhere(plane, [&](int32 x, int32 y) { return Holds(r, x, y) || before(x, y); }))
            << r.width << " by " << r.height << " at " << r.x << ", " << r.y << " of a plane " << size.width << " wide";
    };
    for (const PaintedRect& r : kRects) {
        expectMarked({9, 7}, r);
        for (const int32 width : {64, 128, 129, 200}) {
            expectMarked({width, 7}, r);
            expectMarked({width, 7}, {14 * r.x, r.y, 14 * r.width, r.height});
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
        BitPlane bits;
        test::MakeBitPlane(bits, {9, 7}, [](int32 x, int32) { return x == 3; });
        EXPECT_EQ(MarkRect(bits, r), kBadSize);
        EXPECT_TRUE(test::IsMarkedWhere(bits, [](int32 x, int32) { return x == 3; }));
    }
    EXPECT_SAME_PICTURE(plane, before);
}

} // namespace
} // namespace orvane
