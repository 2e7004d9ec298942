// Pictures drawn out of nothing, put together and jumbled.
#include "tools/train/drawn.h"

#include "tests/train/samples.h"
#include "tools/train/distort.h"
#include "tools/train/harvest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace orvane::train {
namespace {

TEST(DrawnPicture, IsTheSameForTheSameStreamAndAnotherForAnother) {
    const GreyPicture picture = DrawnPicture({90, 60}, Random({1}));
    EXPECT_EQ(picture.size.width, 90);
    EXPECT_EQ(picture.size.height, 60);
    EXPECT_EQ(picture.pixels.size(), 5400u);
    EXPECT_EQ(picture.pixels, DrawnPicture({90, 60}, Random({1})).pixels);
    EXPECT_NE(picture.pixels, DrawnPicture({90, 60}, Random({2})).pixels);
}

TEST(DrawnPicture, HasEdgesEverywhere) {
    for (uint64 i = 0; i < 5; ++i) {
        const GreyPicture picture = DrawnPicture({320, 240}, Random({i}));
        int quarters[4] = {};
        for (int32 y = 0; y < 240; ++y) {
            for (int32 x = 1; x < 320; ++x) {
                const auto at = PixelIndex(x, y, 320);
                if (std::abs(picture.pixels[at] - picture.pixels[at - 1]) > 30) ++quarters[x / 160 + 2 * (y / 120)];
            }
        }
        for (const int edges : quarters) EXPECT_GT(edges, 100) << "picture " << i;
    }
}

TEST(DrawnPicture, ComesWithTheOthersOnRequest) {
    PictureSet one;
    PictureSet two;
    one.pictures.push_back(MadeUpPicture({60, 40}, 1));
    two.pictures.push_back(MadeUpPicture({60, 40}, 1));
    AddDrawnPictures(one, 3, 1, 1);
    AddDrawnPictures(two, 3, 1, 2);
    ASSERT_EQ(one.pictures.size(), 4u);
    EXPECT_EQ(one.pictures[0].pixels, MadeUpPicture({60, 40}, 1).pixels);
    std::set<std::vector<uint8>> different;
    for (std::size_t i = 1; i < 4; ++i) {
        EXPECT_EQ(one.pictures[i].pixels, two.pictures[i].pixels);
        different.insert(one.pictures[i].pixels);
    }
    EXPECT_EQ(different.size(), 3u);
}

TEST(CombinedPicture, IsMadeOfBoth) {
    const GreyPicture dark{{40, 30}, std::vector<uint8>(1200, 60)};
    const GreyPicture bright{{20, 10}, std::vector<uint8>(200, 200)};
    std::set<std::set<uint8>> kinds; // the greys of each result
    for (uint64 stream = 0; stream < 60; ++stream) {
        const GreyPicture both = Combined(dark, bright, Random({stream}));
        ASSERT_EQ(both.pixels.size(), 1200u);
        kinds.insert({both.pixels.begin(), both.pixels.end()});
    }
    using Greys = std::set<uint8>;
    EXPECT_EQ(kinds, (std::set<Greys>{{130}, {47}, {200}, {60}, {60, 200}}));
}

/// How alike the middles of two pictures of a crop's size are: 1 for the same up to light and contrast.
double LikenessOf(const GreyPicture& a, const GreyPicture& b) {
    double n = 0, sumA = 0, sumB = 0, squaresA = 0, squaresB = 0, products = 0;
    for (int32 y = 10; y < 38; ++y) {
        for (int32 x = 10; x < 38; ++x) {
            const double p = a.pixels[PixelIndex(x, y, kCropSide)];
            const double q = b.pixels[PixelIndex(x, y, kCropSide)];
            n += 1;
            sumA += p, sumB += q;
            squaresA += p * p, squaresB += q * q, products += p * q;
        }
    }
    return (n * products - sumA * sumB) / std::sqrt((n * squaresA - sumA * sumA) * (n * squaresB - sumB * sumB));
}

TEST(JumbledFace, IsNoneAnyMore) {
    const GreyPicture face{{kCropSide, kCropSide}, MadeUpCrops(1)[0].pixels};
    ASSERT_GT(LikenessOf(face, face), 0.999);
    std::set<std::vector<uint8>> kinds;
    for (uint64 stream = 0; stream < 200; ++stream) {
        const GreyPicture jumbled = Jumbled(face, Random({stream}));
        EXPECT_LT(LikenessOf(jumbled, face), 0.7) << stream;
        kinds.insert(jumbled.pixels);
    }
    EXPECT_GT(kinds.size(), 80u);
}

} // namespace
} // namespace orvane::train
