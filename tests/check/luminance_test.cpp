// Luminance: the weights, the top row first, and nothing outside the picture.
#include "tools/check/luminance.h"

#include "tests/check/drawn_picture.h"

namespace orvane::tools {
namespace {

TEST(Luminance, WeighsTheColours) {
    Picture picture = BlackPicture(4, 1);
    SetPixel(picture, 0, 0, {255, 0, 0});
    SetPixel(picture, 1, 0, {0, 255, 0});
    SetPixel(picture, 2, 0, {0, 0, 255});
    SetPixel(picture, 3, 0, {255, 255, 255});
    EXPECT_EQ(LuminanceOf(picture, {0, 0, 4, 1}).levels, (std::vector<uint8>{76, 150, 29, 255}));
}

TEST(Luminance, CountsRowsFromTheTop) {
    const Picture picture = DrawnPicture(3, 2, [](int32 x, int32 y) { return 10 * x + 100 * y; });
    const Luminance plane = LuminanceOf(picture, {1, 0, 2, 2});
    EXPECT_EQ(plane.width, 2);
    EXPECT_EQ(plane.height, 2);
    EXPECT_EQ(plane.levels, (std::vector<uint8>{10, 20, 110, 120}));
    EXPECT_EQ(plane.At(1, 1), 120);
}

TEST(Luminance, TakesWhatOfAPartLiesInThePicture) {
    const Picture picture = DrawnPicture(3, 2, [](int32 x, int32 y) { return 10 * x + 100 * y; });
    EXPECT_EQ(LuminanceOf(picture, {-5, -5, 6, 6}).levels, std::vector<uint8>{0});
    EXPECT_EQ(LuminanceOf(picture, {2, 1, 2147483647, 2147483647}).levels, std::vector<uint8>{120});
    EXPECT_TRUE(LuminanceOf(picture, {3, 0, 5, 2}).levels.empty());
    EXPECT_TRUE(LuminanceOf(picture, {0, 0, 0, 2}).levels.empty());
    EXPECT_TRUE(LuminanceOf(picture, {0, 0, -1, -1}).levels.empty());
}

} // namespace
} // namespace orvane::tools
