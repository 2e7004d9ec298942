// Sharpness: the numbers of known pictures, falling with every blur, and the same for a face of any size.
#include "tools/check/sharpness.h"

#include "tests/check/drawn_picture.h"

#include <cmath>

namespace orvane::tools {
namespace {

Luminance PlaneOf(const Picture& picture) { return LuminanceOf(picture, {0, 0, picture.width, picture.height}); }

TEST(LaplacianVariance, IsZeroForFlatPicturesAndRamps) {
    EXPECT_NEAR(SharpnessOf(PlaneOf(FlatPicture(150, 150, 77))), 0, 1e-9);
    const std::vector<double> ramp{0, 1, 2, 3, 1, 2, 3, 4, 2, 3, 4, 5, 3, 4, 5, 6};
    EXPECT_EQ(LaplacianVariance(ramp, 4, 4), 0);
}

TEST(LaplacianVariance, OfAnEdgeIsWhatTheKernelGives) {
    // Four columns 0 0 9 9: the responses are 9 and -9, whose mean is 0.
    const std::vector<double> edge{0, 0, 9, 9, 0, 0, 9, 9, 0, 0, 9, 9};
    EXPECT_EQ(LaplacianVariance(edge, 4, 3), 81);
    // One bright pixel: -4 in its place, alone.
    EXPECT_EQ(LaplacianVariance({0, 0, 0, 0, 1, 0, 0, 0, 0}, 3, 3), 0) << "a single response has no variance";
    const std::vector<double> spot{0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(LaplacianVariance(spot, 4, 3), 6.25) << "-4 and 1: mean -1.5";
}

TEST(LaplacianVariance, IsZeroWithoutAPixelThatHasFourNeighbours) {
    EXPECT_EQ(LaplacianVariance({1, 2, 3, 4}, 2, 2), 0);
    EXPECT_EQ(LaplacianVariance({}, 0, 0), 0);
    EXPECT_EQ(SharpnessOf({}), 0);
}

TEST(Resampled, ShrinksByMeansOfAreas) {
    const Luminance plane{3, 1, {0, 90, 30}};
    EXPECT_EQ(Resampled(plane, 1, 1), std::vector<double>{40});
    const std::vector<double> two = Resampled(plane, 2, 1);
    EXPECT_NEAR(two[0], 30, 1e-9) << "one pixel and half of the second";
    EXPECT_NEAR(two[1], 50, 1e-9);
}

TEST(Resampled, GrowsLinearlyBetweenPixelCentres) {
    const std::vector<double> wide = Resampled({2, 1, {0, 80}}, 4, 1);
    EXPECT_EQ(wide, (std::vector<double>{0, 20, 60, 80}));
    EXPECT_EQ(Resampled({2, 2, {1, 2, 3, 4}}, 2, 2), (std::vector<double>{1, 2, 3, 4}));
}

/// A face of stripes whose edges are so many sixtieths of its eyes' distance wide.
Picture Striped(int32 side, double blur) {
    const double unit = static_cast<double>(side) / kSharpnessSide;
    return DrawnPicture(side, side, [=](int32 x, int32) {
        const double place = std::fmod(x / unit, 24.0);
        const double fromEdge = place < 12 ? place - 6 : 18 - place;
        return static_cast<int>(std::clamp(128 + 160 * fromEdge / blur, 40.0, 216.0));
    });
}

TEST(Sharpness, FallsWithEveryBlur) {
    double before = 1e9;
    for (const double blur : {1.0, 2.0, 4.0, 8.0, 12.0}) {
        const double sharpness = SharpnessOf(PlaneOf(Striped(4 * kSharpnessSide, blur)));
        EXPECT_LT(sharpness, before * 0.8) << blur;
        before = sharpness;
    }
    EXPECT_GT(before, 0);
}

TEST(Sharpness, DoesNotDependOnTheSizeOfTheFace) {
    const double own = SharpnessOf(PlaneOf(Striped(kSharpnessSide * 2, 4)));
    for (const int32 times : {3, 5, 8}) {
        EXPECT_NEAR(SharpnessOf(PlaneOf(Striped(kSharpnessSide * times, 4))), own, 0.1 * own) << times;
    }
}

TEST(Sharpness, OfAFaceThatWasEnlargedIsLow) {
    const Picture sharp = Striped(kSharpnessSide, 1);
    const Luminance plane = PlaneOf(sharp);
    const int32 third = kSharpnessSide / 3;
    Luminance small{third, third, {}};
    for (const double level : Resampled(plane, third, third)) small.levels.push_back(static_cast<uint8>(level));
    EXPECT_LT(SharpnessOf(small), 0.2 * SharpnessOf(plane));
}

} // namespace
} // namespace orvane::tools
