// The contrast stretch: where the bounds lie, and what becomes of the levels between and beyond them.
#include "actions/colour_correction.h"

#include "actions/clip_bounds.h"

#include "image/result_codes.h"
#include "tests/reference/colour_correction.h"
#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/portrait.h"
#include "tests/support/printed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace orvane {
namespace {

constexpr float kFraction = 0.05F;
constexpr int32 kMost = std::numeric_limits<int32>::max();
constexpr int32 kLeast = std::numeric_limits<int32>::min();

/// A row of grey pixels of these levels.
void MakeRow(ImageBuffer& image, const std::vector<uint8>& levels) {
    ASSERT_TRUE(image.Create(static_cast<int32>(levels.size()), 1, 3, kDepth8u, 0));
    for (std::size_t i = 0; i < levels.size(); ++i) std::fill_n(image.data + 3 * i, 3, levels[i]);
}

/// `count` grey pixels of each level from `from` to `to`.
std::vector<uint8> Levels(int32 from, int32 to, int32 count = 1) {
    std::vector<uint8> levels;
    for (int32 v = from; v <= to; ++v)
        levels.insert(levels.end(), static_cast<std::size_t>(count), static_cast<uint8>(v));
    return levels;
}

std::vector<uint8> operator+(std::vector<uint8> a, const std::vector<uint8>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

void ExpectBounds(const ImageBuffer& image, int32 expectedLow, int32 expectedHigh) {
    int32 low = 77, high = 78;
    EXPECT_EQ(FindClipBounds(image, kFraction, low, high), kSuccess);
    EXPECT_EQ(low, expectedLow);
    EXPECT_EQ(high, expectedHigh);
}

/// A picture whose levels crowd in a band of their own for each channel, with black and white sprinkled in.
void MakeBandedPicture(ImageBuffer& image, test::Random& random) {
    ASSERT_TRUE(image.Create(random.Int(1, 40), random.Int(1, 30), 3, kDepth8u, 0));
    int32 lowest[3], highest[3];
    for (int32 c = 0; c < 3; ++c) {
        lowest[c] = random.Int(0, 255);
        highest[c] = random.Int(lowest[c], 255);
    }
    const int32 extremes = random.Int(0, 3);
    for (int32 y = 0; y < image.height; ++y) {
        for (int32 x = 0; x < image.width; ++x) {
            uint8* pixel = RowAt(image.data, image.Step(), y) + std::ptrdiff_t{3} * x;
            for (int32 c = 0; c < 3; ++c) {
                const bool extreme = random.Int(0, 9) < extremes;
                pixel[c] = static_cast<uint8>(extreme ? random.Int(0, 1) * 255 : random.Int(lowest[c], highest[c]));
            }
        }
    }
}

TEST(ClipBounds, LieAStepPastTheBandThatHoldsAFraction) {
    struct Case {
        const char* what;
        std::vector<uint8> levels;
        int32 low, high;
    };
    const Case cases[] = {
        {"both first bands hold enough", Levels(1, 1, 10) + Levels(254, 254, 10), 4, 247},
        {"only the deepest level of the first high band", Levels(249, 249, 2) + Levels(100, 100, 37), 102, 247},
        {"the level below that needs the second band", Levels(248, 248, 2) + Levels(100, 100, 37), 102, 245},
        {"level 2 is in the first low band", Levels(2, 2, 2) + Levels(100, 100, 37), 4, 97},
        {"level 3 needs the second low band", Levels(3, 3, 2) + Levels(100, 100, 37), 6, 97},
        {"all levels alike: 13 of 254 are above a twentieth", Levels(1, 254), 16, 239},
        {"one flat level: the bounds cross", Levels(128, 128, 50), 130, 125},
        {"nothing but black and white: both searches run to their ends", Levels(0, 0, 5) + Levels(255, 255, 5), 256,
         -1},
        {"black and white count nowhere", Levels(0, 0, 900) + Levels(255, 255, 900) + Levels(1, 254), 16, 239},
        {"a single pixel", Levels(200, 200), 202, 197},
        {"a single black pixel", Levels(0, 0), 256, -1},
        {"the last band of the low search", Levels(254, 254, 5), 256, 247},
        {"the last band of the high search", Levels(1, 1, 5), 4, -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ImageBuffer image;
        MakeRow(image, c.levels);
        ExpectBounds(image, c.low, c.high);
    }
}

TEST(ClipBounds, AreReachedByTheFractionItselfAndNotByLess) {
    // A float's twentieth is a little more than a twentieth: 1 of 20 is below it, 2 of 39 are not.
    ImageBuffer image;
    MakeRow(image, Levels(254, 254, 1) + Levels(100, 100, 19));
    ExpectBounds(image, 102, 97);
    MakeRow(image, Levels(254, 254, 2) + Levels(100, 100, 37));
    ExpectBounds(image, 102, 247);
    int32 low, high;
    MakeRow(image, Levels(254, 254, 1) + Levels(100, 100, 15));
    FindClipBounds(image, 0.0625F, low, high);
    EXPECT_EQ(high, 247) << "a sixteenth is exact";
}

TEST(ClipBounds, AreDecidedByTheFirstChannelForAllThree) {
    ImageBuffer image;
    for (int32 c = 0; c < 3; ++c) {
        MakeRow(image, Levels(100, 140));
        for (int32 x = 0; x < 20; ++x) test::PixelAt(image, x, 0)[c] = 250; // only this one is bright
        ExpectBounds(image, 104, 247);
    }
}

void ExpectBoundsOfTheLoops(const ImageBuffer& image) {
    for (const float fraction : {kFraction, 0.0F, 0.3F, 1.0F, 1.5F}) {
        SCOPED_TRACE(::testing::Message() << "fraction " << fraction);
        const test::reference::ClipBounds expected = test::reference::FindBounds(image, fraction);
        int32 low = 0, high = 0;
        EXPECT_EQ(FindClipBounds(image, fraction, low, high), kSuccess);
        ASSERT_EQ(low, expected.low);
        ASSERT_EQ(high, expected.high);
    }
}

TEST(ClipBounds, AreThoseOfTheLoopsOverTheWholePicture) {
    test::Random random(3);
    for (int32 i = 0; i < 200; ++i) {
        ImageBuffer image;
        MakeBandedPicture(image, random);
        SCOPED_TRACE(::testing::Message() << "picture " << i);
        ASSERT_NO_FATAL_FAILURE(ExpectBoundsOfTheLoops(image));
    }
}

TEST(ClipBounds, OfHighPicturesAreThoseOfTheLoopsWhateverSomeRowsSay) {
    test::Random random(7);
    for (int32 i = 0; i < 150; ++i) {
        ImageBuffer image, other;
        MakeBandedPicture(other, random);
        ASSERT_TRUE(image.Create(other.width, random.Int(31, 70), 3, kDepth8u, 0));
        // Rows far apart, from which the bounds are guessed, are like all, a little off, or of another kind.
        const int32 kind = random.Int(0, 3), off = random.Int(1, 6);
        for (int32 y = 0; y < image.height; ++y) {
            const uint8* from = RowAt(other.data, other.Step(), random.Int(0, other.height - 1));
            uint8* to = RowAt(image.data, image.Step(), y);
            std::copy_n(from, image.Step(), to);
            if (kind == 0 || y % 16 != 8) continue;
            const uint8 flat = static_cast<uint8>(kind == 3 ? random.Int(0, 1) * 255 : random.Int(1, 254));
            for (int32 k = 0; k < 3 * image.width; ++k) {
                to[k] = kind == 1 ? static_cast<uint8>(std::clamp(to[k] + off, 0, 255)) : flat;
            }
        }
        SCOPED_TRACE(::testing::Message() << "picture " << i);
        ASSERT_NO_FATAL_FAILURE(ExpectBoundsOfTheLoops(image));
    }
}

TEST(ClipBounds, OfAVeryWidePictureAreThoseOfTheLoops) {
    // Counts of bytes are full after 255 vectors.
    ImageBuffer image;
    test::MakeRandomPicture(image, 3 * 8160 + 77, 33, 3, 5);
    for (int32 y = 0; y < image.height; ++y) {
        uint8* row = RowAt(image.data, image.Step(), y);
        for (int32 k = 0; k < 3 * image.width; ++k) row[k] = static_cast<uint8>(200 + row[k] % 20);
    }
    for (const float fraction : {kFraction, 0.95F}) {
        const test::reference::ClipBounds expected = test::reference::FindBounds(image, fraction);
        int32 low = 0, high = 0;
        EXPECT_EQ(FindClipBounds(image, fraction, low, high), kSuccess);
        EXPECT_EQ(low, expected.low);
        EXPECT_EQ(high, expected.high);
    }
}

TEST(ClipBounds, OfOneChannelStayAsTheyWere) {
    ImageBuffer image;
    test::MakeRandomPicture(image, 20, 10, 1, 1);
    ExpectBounds(image, 77, 78);
}

TEST(ClipBounds, OfAPictureWithoutStorageAreThoseOfNoLevelsAndTold) {
    ImageBuffer image;
    image.width = image.height = 10;
    image.channels = 3;
    image.depth = kDepth8u;
    EXPECT_EQ(test::Printed([&] { ExpectBounds(image, 256, -1); }), "Assertion Failed -8 \n");
}

TEST(Stretch, MapsTheBoundsOntoBlackAndWhite) {
    struct Case {
        int32 low, high;
        uint8 level, expected;
    };
    const Case cases[] = {
        {4, 247, 4, 0},     {4, 247, 247, 255},  {4, 247, 3, 0},
        {4, 247, 255, 255}, {4, 247, 125, 127},  {50, 152, 51, 2}, // 2.5 goes to the even neighbour
        {50, 152, 53, 8},                                          // 7.5 likewise
        {50, 152, 52, 5},   {10, 200, 255, 255}, {0, 255, 199, 199},
    };
    for (const Case& c : cases) {
        ImageBuffer image;
        MakeRow(image, {c.level});
        EXPECT_EQ(StretchLevels(image, c.low, c.high), kSuccess);
        for (int32 channel = 0; channel < 3; ++channel) {
            EXPECT_EQ(+image.data[channel], +c.expected) << +c.level << " between " << c.low << " and " << c.high;
        }
    }
}

TEST(Stretch, HasTheBytesOfTheFivePrimitives) {
    for (int32 low = -1; low <= 256; low += 7) {
        for (int32 high = -1; high <= 256; high += 5) {
            ImageBuffer image, expected;
            MakeRow(image, Levels(0, 255));
            expected.CopyFrom(image);
            test::reference::Stretch(expected, {low, high});
            EXPECT_EQ(StretchLevels(image, low, high), kSuccess);
            ASSERT_PRED_FORMAT2(test::SamePicture, image, expected) << "between " << low << " and " << high;
        }
    }
}

TEST(Stretch, BetweenEqualBoundsIsWhiteAboveThemAndBlackElse) {
    ImageBuffer image;
    MakeRow(image, {99, 100, 101, 255});
    EXPECT_EQ(StretchLevels(image, 100, 100), kSuccess);
    const uint8 expected[4] = {0, 0, 255, 255}; // nothing times endless is no number, hence black
    for (int32 x = 0; x < 4; ++x) EXPECT_EQ(+*test::PixelAt(image, x, 0), +expected[x]) << x;
}

TEST(Stretch, BetweenCrossedBoundsIsBlack) {
    ImageBuffer image;
    MakeRow(image, Levels(0, 255));
    EXPECT_EQ(StretchLevels(image, 130, 125), kSuccess);
    for (int32 i = 0; i < 3 * 256; ++i) ASSERT_EQ(+image.data[i], 0) << i;
}

TEST(Stretch, BetweenAbsurdBoundsStaysWithinTheByte) {
    for (const int32 low : {kLeast, -256, 512, kMost}) {
        for (const int32 high : {kLeast, 0, kMost}) {
            ImageBuffer image;
            MakeRow(image, Levels(0, 255));
            EXPECT_EQ(StretchLevels(image, low, high), kSuccess);
            EXPECT_EQ(+image.data[0], 0) << low << ", " << high;
            const double span = static_cast<double>(high) - low;
            const double raised = 255 - (low & 0xFF); // the subtracted bound is cut to a byte
            const double limited = span == 0 ? raised : std::clamp(raised * 255 / span, 0.0, 255.0);
            EXPECT_NEAR(*test::PixelAt(image, 255, 0), limited, 0.5) << low << ", " << high;
        }
    }
}

TEST(Stretch, LeavesPicturesOfAnotherFormAlone) {
    ImageBuffer image, before;
    test::MakeRandomPicture(image, 21, 10, 1, 1);
    before.CopyFrom(image);
    EXPECT_EQ(StretchLevels(image, 50, 100), kSuccess);
    EXPECT_SAME_PICTURE(image, before);
}

TEST(ColourCorrection, HasThePixelsOfThePlainForm) {
    test::Random random(5);
    for (int32 i = 0; i < 200; ++i) {
        ImageBuffer source, before, result, expected;
        MakeBandedPicture(source, random);
        before.CopyFrom(source);
        test::reference::CorrectColours(source, expected);
        EXPECT_EQ(ActionColourCorrection(source, result), kSuccess);
        ASSERT_PRED_FORMAT2(test::SamePicture, result, expected) << "picture " << i;
        ASSERT_PRED_FORMAT2(test::SamePicture, source, before);
        CorrectColours(source);
        ASSERT_PRED_FORMAT2(test::SamePicture, source, expected) << "picture " << i << " in place";
    }
}

TEST(ColourCorrection, MakesBlackAndWhiteWhollyBlack) {
    ImageBuffer source, result;
    MakeRow(source, {0, 255, 255, 0, 255});
    EXPECT_EQ(ActionColourCorrection(source, result), kSuccess);
    for (int32 i = 0; i < 15; ++i) EXPECT_EQ(+result.data[i], 0) << i;
}

TEST(ColourCorrection, MakesOneFlatGreyWhollyBlack) {
    ImageBuffer source, result;
    ASSERT_TRUE(source.Create(30, 20, 3, kDepth8u, 0));
    source.Fill(128.0);
    EXPECT_EQ(ActionColourCorrection(source, result), kSuccess);
    for (int32 i = 0; i < 90; ++i) ASSERT_EQ(+result.data[i], 0) << i;
}

TEST(ColourCorrection, KeepsTheWhiteOfARemovedBackground) {
    ImageBuffer source, result;
    MakeRow(source, Levels(60, 180) + Levels(255, 255, 300));
    EXPECT_EQ(ActionColourCorrection(source, result), kSuccess);
    for (int32 x = 121; x < 421; ++x) ASSERT_EQ(+*test::PixelAt(result, x, 0), 255) << x;
    EXPECT_EQ(+result.data[0], 0);
    EXPECT_EQ(+*test::PixelAt(result, 120, 0), 255) << "the brightest of the person is stretched to white, too";
}

TEST(ColourCorrection, OfPicturesOfOneRowOrColumnIsThePlainForm) {
    for (const ImageSize& size : {ImageSize{1, 1}, ImageSize{1, 90}, ImageSize{91, 1}}) {
        ImageBuffer source, result, expected;
        test::MakeRandomPicture(source, size.width, size.height, 3, 8);
        test::reference::CorrectColours(source, expected);
        EXPECT_EQ(ActionColourCorrection(source, result), kSuccess);
        EXPECT_SAME_PICTURE(result, expected);
    }
}

TEST(ColourCorrection, InPlaceLeavesPicturesOfAnotherFormAloneAndTellsOfNone) {
    ImageBuffer source, before;
    test::MakeRandomPicture(source, 20, 10, 1, 1);
    before.CopyFrom(source);
    EXPECT_EQ(test::Printed([&] { CorrectColours(source); }), "");
    EXPECT_SAME_PICTURE(source, before);
    source.Reset();
    EXPECT_EQ(test::Printed([&] { CorrectColours(source); }), "Assertion Failed -8 \n");
}

TEST(ColourCorrection, OfOneChannelIsACopy) {
    ImageBuffer source, result;
    test::MakeRandomPicture(source, 21, 10, 1, 1);
    EXPECT_EQ(ActionColourCorrection(source, result), kSuccess);
    EXPECT_SAME_PICTURE(result, source);
}

TEST(ColourCorrection, WithoutStorageGivesAPictureWithoutStorage) {
    ImageBuffer source, result;
    test::MakeRandomPicture(result, 4, 4, 3, 1);
    EXPECT_EQ(test::Printed([&] { EXPECT_EQ(ActionColourCorrection(source, result), kSuccess); }),
              "Assertion Failed -8 \n");
    EXPECT_EQ(result.data, nullptr);

    test::MakeRandomPicture(source, 20, 10, 3, 1);
    const test::HeapLimit none(0);
    EXPECT_EQ(ActionColourCorrection(source, result), kSuccess);
    EXPECT_EQ(result.data, nullptr);
}

} // namespace
} // namespace orvane
