// A scaled copy shows the same scene, a part of a picture another one.
#include "tools/operator/same_scene.h"

#include "tests/tools/picture_files.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

PixelRows RowsOf(const Picture& picture) { return {picture.pixels.data(), picture.width, picture.height}; }

/// A part of `picture`, scaled by nearest neighbours; the part's corner counts from the upper left one.
Picture Part(const Picture& picture, int32 left, int32 top, int32 width, int32 height, int32 toWidth, int32 toHeight) {
    Picture part = BlackPicture(toWidth, toHeight);
    for (int32 y = 0; y < toHeight; ++y) {
        for (int32 x = 0; x < toWidth; ++x) {
            SetPixel(part, x, y, PixelAt(picture, left + x * width / toWidth, top + y * height / toHeight));
        }
    }
    return part;
}

TEST(SameScene, HoldsForEveryScale) {
    const Picture picture = QuarteredPicture(320, 240);
    for (const auto& [width, height] : {std::pair{320, 240}, {400, 300}, {256, 192}, {640, 480}, {161, 119}}) {
        EXPECT_TRUE(ShowSameScene(RowsOf(picture), RowsOf(Part(picture, 0, 0, 320, 240, width, height)))) << width;
    }
}

TEST(SameScene, APartIsAnotherScene) {
    const Picture picture = QuarteredPicture(320, 240);
    EXPECT_FALSE(ShowSameScene(RowsOf(picture), RowsOf(Part(picture, 0, 0, 160, 240, 480, 860))));
    EXPECT_FALSE(ShowSameScene(RowsOf(picture), RowsOf(Part(picture, 100, 90, 80, 100, 480, 600))));
    EXPECT_FALSE(ShowSameScene(RowsOf(picture), RowsOf(Part(picture, 80, 80, 240, 160, 320, 240))));
}

TEST(SameScene, APictureOfOnePixelIsCompared) {
    const Picture dot = ColourfulPicture(1, 1);
    EXPECT_TRUE(ShowSameScene(RowsOf(dot), RowsOf(dot)));
    EXPECT_TRUE(ShowSameScene(RowsOf(dot), RowsOf(BlackPicture(33, 2))));
    EXPECT_FALSE(ShowSameScene(RowsOf(dot), RowsOf(QuarteredPicture(33, 2))));
}

} // namespace
} // namespace orvane::tools
