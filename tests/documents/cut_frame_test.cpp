// The last cut of a portrait: its size to the pixel, its proportions, and what stands beyond the photograph.
#include "tools/documents/cut_frame.h"

#include "tests/tools/picture_files.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

PictureRows RowsOf(const Picture& picture) {
    return {picture.pixels.data(), picture.width, picture.height, picture.step};
}

bool IsNear(Colour a, Colour b) {
    return std::abs(a.red - b.red) < 12 && std::abs(a.green - b.green) < 12 && std::abs(a.blue - b.blue) < 12;
}

TEST(CutFrame, OfTheSameSizeKeepsEveryPixel) {
    const Picture source = ColourfulPicture(60, 50);
    Picture cut;
    ASSERT_TRUE(CutFrame(RowsOf(source), {7, 9, 31, 37}, 31, 37, {}, &cut));
    ASSERT_EQ(cut.width, 31);
    ASSERT_EQ(cut.height, 37);
    for (int32 y = 0; y < 37; ++y) {
        for (int32 x = 0; x < 31; ++x) {
            const Colour a = PixelAt(cut, x, y);
            const Colour b = PixelAt(source, x + 7, y + 9);
            ASSERT_TRUE(a.red == b.red && a.green == b.green && a.blue == b.blue) << x << "," << y;
        }
    }
}

TEST(CutFrame, HasTheSizeAskedForWhateverTheFactor) {
    const Picture source = ColourfulPicture(400, 500);
    for (const double height : {3.7, 17.0, 99.9, 333.3, 480.0}) {
        for (const int32 asked : {80, 531, 1063}) {
            const int32 width = asked * 35 / 45;
            Picture cut;
            ASSERT_TRUE(CutFrame(RowsOf(source), {10.3, 11.7, height * 35 / 45, height}, width, asked, {}, &cut));
            EXPECT_EQ(cut.width, width);
            EXPECT_EQ(cut.height, asked);
            EXPECT_EQ(cut.step, PictureStep(width));
            // Nothing was left out at the far corner.
            const Colour corner = PixelAt(cut, width - 1, 0);
            EXPECT_NE(corner.red + corner.green + corner.blue, 0);
        }
    }
}

/// The extent of what is bright, across and down.
std::pair<int32, int32> BrightExtent(const Picture& picture) {
    int32 left = picture.width, right = -1, top = picture.height, bottom = -1;
    for (int32 y = 0; y < picture.height; ++y) {
        for (int32 x = 0; x < picture.width; ++x) {
            if (PixelAt(picture, x, y).green < 128) continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    return {right - left + 1, bottom - top + 1};
}

TEST(CutFrame, DistortsNothing) {
    Picture source = BlackPicture(400, 400);
    for (int32 y = 150; y < 250; ++y) {
        for (int32 x = 150; x < 250; ++x) SetPixel(source, x, y, {255, 255, 255});
    }
    for (const double height : {180.0, 225.0, 360.0}) {
        const double width = height * 35 / 45;
        Picture cut;
        ASSERT_TRUE(CutFrame(RowsOf(source), {200 - width / 2, 200 - height / 2, width, height}, 413, 531, {}, &cut));
        const auto [across, down] = BrightExtent(cut);
        EXPECT_NEAR(across, 100 * 531 / height, 3);
        EXPECT_NEAR(across, down, 1);
    }
}

TEST(CutFrame, BeyondThePhotographStandsItsEdgeOrTheColour) {
    Picture source = QuarteredPicture(40, 40); // red, green; blue, yellow
    const PlaneRect frame{-20, -20, 80, 80};
    Picture edge;
    ASSERT_TRUE(CutFrame(RowsOf(source), frame, 160, 160, {Fill::Kind::edge}, &edge));
    EXPECT_TRUE(IsNear(PixelAt(edge, 5, 5), kRed));
    EXPECT_TRUE(IsNear(PixelAt(edge, 155, 5), kGreen));
    EXPECT_TRUE(IsNear(PixelAt(edge, 5, 155), kBlue));
    EXPECT_TRUE(IsNear(PixelAt(edge, 155, 155), kYellow));
    Picture colour;
    ASSERT_TRUE(CutFrame(RowsOf(source), frame, 160, 160, {Fill::Kind::colour, 1, 200, 99}, &colour));
    for (const auto& [x, y] :
         {std::pair{5, 5}, {155, 5}, {5, 155}, {155, 155}, {80, 5}, {80, 155}, {5, 80}, {155, 80}}) {
        EXPECT_TRUE(IsNear(PixelAt(colour, x, y), {1, 200, 99})) << x << "," << y;
    }
    EXPECT_TRUE(IsNear(PixelAt(colour, 60, 60), kRed));
    EXPECT_TRUE(IsNear(PixelAt(colour, 100, 100), kYellow));
}

TEST(CutFrame, OfMorePixelsThanAPictureMayHaveIsNone) {
    const Picture source = ColourfulPicture(40, 40);
    Picture cut;
    EXPECT_FALSE(CutFrame(RowsOf(source), {-1e5, -1e5, 2e5, 2e5}, 100, 100, {Fill::Kind::edge}, &cut));
    EXPECT_FALSE(CutFrame(RowsOf(source), {0, 0, 40, 40}, 32768, 32768, {}, &cut));
    EXPECT_TRUE(cut.pixels.empty());
}

} // namespace
} // namespace orvane::tools
