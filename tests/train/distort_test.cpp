// Distorted pictures: other pixels, the same size, nothing made up.
#include "tools/train/distort.h"

#include "tests/train/samples.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::train {
namespace {

TEST(DistortedPicture, IsTheSameForTheSameStreamAndAnotherForAnother) {
    const GreyPicture picture = MadeUpPicture({60, 40}, 1);
    EXPECT_EQ(Distorted(picture, Random({1})).pixels, Distorted(picture, Random({1})).pixels);
    EXPECT_NE(Distorted(picture, Random({1})).pixels, Distorted(picture, Random({2})).pixels);
    EXPECT_NE(Distorted(picture, Random({1})).pixels, picture.pixels);
}

class DistortedSize : public testing::TestWithParam<ImageSize> {};
INSTANTIATE_TEST_SUITE_P(AlsoNarrow, DistortedSize,
                         testing::Values(ImageSize{1, 1}, ImageSize{1, 9}, ImageSize{9, 1}, ImageSize{2, 2},
                                         ImageSize{57, 31}));

TEST_P(DistortedSize, StaysAsItWas) {
    const GreyPicture picture = MadeUpPicture(GetParam(), 2);
    for (uint64 stream = 0; stream < 50; ++stream) {
        const GreyPicture distorted = Distorted(picture, Random({stream}));
        EXPECT_EQ(distorted.size.width, GetParam().width);
        EXPECT_EQ(distorted.size.height, GetParam().height);
        EXPECT_EQ(distorted.pixels.size(), picture.pixels.size());
    }
}

TEST(DistortedPicture, OfOneGreyHasOneGrey) {
    const GreyPicture flat{{50, 30}, std::vector<uint8>(50 * 30, 130)};
    for (uint64 stream = 0; stream < 50; ++stream) {
        const GreyPicture distorted = Distorted(flat, Random({stream}));
        const auto [least, most] = std::minmax_element(distorted.pixels.begin(), distorted.pixels.end());
        EXPECT_EQ(*least, *most) << "stream " << stream;
    }
}

TEST(DistortedPicture, FillsTheFrameOutOfItself) {
    // Dark above, bright below: whatever the turn, nothing but two greys and the blends between them.
    GreyPicture halves{{64, 64}, std::vector<uint8>(64 * 64, 40)};
    std::fill_n(halves.pixels.begin(), 32 * 64, uint8{200});
    for (uint64 stream = 0; stream < 50; ++stream) {
        const GreyPicture distorted = Distorted(halves, Random({stream}));
        const uint8 least = *std::min_element(distorted.pixels.begin(), distorted.pixels.end());
        const uint8 most = *std::max_element(distorted.pixels.begin(), distorted.pixels.end());
        const auto blends = std::count_if(distorted.pixels.begin(), distorted.pixels.end(),
                                          [&](uint8 p) { return p != least && p != most; });
        EXPECT_LT(least, most) << "stream " << stream;
        EXPECT_LT(blends, 6 * 64) << "stream " << stream; // a seam or two, a pixel or two wide
    }
}

} // namespace
} // namespace orvane::train
