// The background removal as a whole: what it does with people before backdrops, and with odd input.
#include "actions/background.h"

#include "actions/action_settings.h"
#include "image/result_codes.h"
#include "tests/reference/background.h"
#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/portrait.h"
#include "tests/support/printed.h"
#include "tests/support/settings_guard.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace orvane {
namespace {

constexpr int32 kMost = std::numeric_limits<int32>::max();
constexpr int32 kLeast = std::numeric_limits<int32>::min();

class Background : public ::testing::Test {
protected:
    ImageBuffer source, destination, mask;

    void Draw(const test::Portrait& portrait) {
        test::DrawPortrait(portrait, source);
        g_faceRecord = test::FaceOf(portrait);
    }

    /// Runs on what is there. What the library tells goes to `told`.
    int32 Run(int32 tolerance, ImageSize original = {0, 0}) {
        int32 status = 0;
        told = test::Printed([&] {
            status = ActionRemoveBackground(source, destination, mask, tolerance, original.width, original.height);
        });
        return status;
    }

    /// Compares the run with the plain form. Mask and destination hold pixels of their own before.
    void ExpectAsPlain(int32 tolerance, ImageSize original = {0, 0}) {
        test::MakeRandomPicture(mask, 13, 11, 1, 5);
        test::MakeRandomPicture(destination, source.width, source.height, 3, 6);
        ImageBuffer expected, expectedMask;
        expectedMask.CopyFrom(mask);
        FaceRecord face = g_faceRecord;
        if (g_actionEnabled[kSlotCrop] != 0) {
            face.centreX = (source.width + 1) / 2;
            face.centreY = (source.height + 1) / 2;
        }
        std::string expectedTold;
        test::reference::RemoveBackground(source, expected, expectedMask, tolerance, g_fillLevel, face, original,
                                          expectedTold);
        EXPECT_EQ(Run(tolerance, original), kSuccess);
        ASSERT_PRED_FORMAT2(test::SamePicture, destination, expected);
        ASSERT_PRED_FORMAT2(test::SamePicture, mask, expectedMask);
        ASSERT_EQ(told, expectedTold);
    }

    bool IsWhite(int32 x, int32 y) const {
        const uint8* p = test::PixelAt(destination, x, y);
        return p[0] == 255 && p[1] == 255 && p[2] == 255;
    }
    bool IsSource(int32 x, int32 y) const {
        const uint8* p = test::PixelAt(destination, x, y);
        const uint8* q = test::PixelAt(source, x, y);
        return p[0] == q[0] && p[1] == q[1] && p[2] == q[2];
    }
    int32 WhitePixels() const {
        int32 count = 0;
        for (int32 y = 0; y < destination.height; ++y) {
            for (int32 x = 0; x < destination.width; ++x) count += IsWhite(x, y) ? 1 : 0;
        }
        return count;
    }
    void ExpectPassedThrough() { EXPECT_SAME_PICTURE(destination, source); }
    void ExpectMaskIs(uint8 level) const {
        for (int32 y = 0; y < mask.height; ++y) {
            for (int32 x = 0; x < mask.width; ++x) ASSERT_EQ(+*test::PixelAt(mask, x, y), +level) << x << ", " << y;
        }
    }

    std::string told;

private:
    test::FreshSettings fresh_;
};

TEST_F(Background, OfAFlatBackdropTurnsWhiteAndThePersonStays) {
    Draw({});
    EXPECT_EQ(Run(40), kSuccess);
    EXPECT_EQ(told, "");
    for (const ImagePoint p : {ImagePoint{0, 149}, ImagePoint{119, 149}, ImagePoint{117, 147}, ImagePoint{60, 148},
                               ImagePoint{1, 80}, ImagePoint{118, 80}}) {
        EXPECT_TRUE(IsWhite(p.x, p.y)) << p.x << ", " << p.y;
        EXPECT_EQ(+*test::PixelAt(mask, p.x, p.y), 0) << p.x << ", " << p.y;
    }
    for (const ImagePoint p : {ImagePoint{60, 75}, ImagePoint{52, 80}, ImagePoint{60, 20}, ImagePoint{40, 3}}) {
        EXPECT_TRUE(IsSource(p.x, p.y)) << p.x << ", " << p.y;
        EXPECT_NE(+*test::PixelAt(mask, p.x, p.y), 0) << p.x << ", " << p.y;
    }
}

TEST_F(Background, HasAHardEdge) {
    Draw({.width = 200, .height = 240, .noise = 4});
    ASSERT_EQ(Run(40), kSuccess);
    for (int32 y = 0; y < 240; ++y) {
        for (int32 x = 0; x < 200; ++x) {
            const bool shown = *test::PixelAt(mask, x, y) != 0;
            ASSERT_TRUE(shown ? IsSource(x, y) : IsWhite(x, y)) << x << ", " << y;
        }
    }
}

TEST_F(Background, TakesTheFillLevel) {
    Draw({});
    g_fillLevel = 17;
    ASSERT_EQ(Run(40), kSuccess);
    EXPECT_EQ(+test::PixelAt(destination, 117, 147)[0], 17);
}

TEST_F(Background, IsLeftAloneByAToleranceUnderFive) {
    for (const int32 tolerance : {4, 0, -1, -1000, kLeast}) {
        Draw({});
        test::MakeRandomPicture(mask, 120, 150, 1, 1);
        EXPECT_EQ(Run(tolerance), kSuccess) << tolerance;
        ExpectPassedThrough();
        ExpectMaskIs(154);
        EXPECT_EQ(told, "");
    }
    EXPECT_EQ(Run(5), kSuccess);
    EXPECT_TRUE(IsWhite(117, 147)) << "five is enough";
}

TEST_F(Background, IsLeftAloneWithAMaskWithoutStorageToo) {
    Draw({});
    EXPECT_EQ(Run(4), kSuccess);
    ExpectPassedThrough();
    EXPECT_EQ(mask.data, nullptr);
    EXPECT_EQ(Run(40), kSuccess) << "which a run gives storage";
    EXPECT_EQ(mask.width, 120);
}

TEST_F(Background, WithoutAFaceIsTenAndNothingIsTouched) {
    Draw({});
    test::MakeRandomPicture(mask, 9, 9, 1, 1);
    test::MakeRandomPicture(destination, 8, 7, 3, 1);
    ImageBuffer maskBefore, before;
    maskBefore.CopyFrom(mask);
    before.CopyFrom(destination);
    for (const FaceRecord& face : {FaceRecord{}, FaceRecord{60, 75, 0, 40}, FaceRecord{60, 75, 40, 0}}) {
        g_faceRecord = face;
        EXPECT_EQ(Run(40), kNoFace);
        EXPECT_EQ(Run(0), kNoFace);
        EXPECT_SAME_PICTURE(mask, maskBefore);
        EXPECT_SAME_PICTURE(destination, before);
    }
}

TEST_F(Background, OfGreyTakesGreyClothesThatTouchIt) {
    Draw({.backdrop = test::kGreyBackdrop, .clothes = {60, 60, 60}});
    ASSERT_EQ(Run(40), kSuccess);
    EXPECT_TRUE(IsWhite(117, 147));
    EXPECT_TRUE(IsWhite(60, 10)) << "grey clothes go, however dark";
    EXPECT_TRUE(IsSource(60, 75)) << "the face stays";
}

TEST_F(Background, OfGreyLeavesColouredClothes) {
    Draw({.backdrop = test::kGreyBackdrop});
    ASSERT_EQ(Run(40), kSuccess);
    EXPECT_TRUE(IsWhite(117, 147));
    EXPECT_TRUE(IsSource(60, 10));
}

TEST_F(Background, OfValueAndSaturationWithoutACommonBitTakesAllWithIt) {
    Draw({.backdrop = {96, 96, 128}, .person = {30, 200, 210}, .clothes = {30, 200, 60}}); // value 128, saturation 64
    ASSERT_EQ(Run(40), kSuccess);
    EXPECT_EQ(WhitePixels(), 120 * 150) << "the subject's flood reaches the corner, and the corner's clears it";
    ExpectMaskIs(0);
}

TEST_F(Background, HairAtTheUpperRightCornerClearsThePerson) {
    Draw({});
    for (int32 y = 75; y <= 147; ++y) { // not up to the edges: the samples see none of it
        for (int32 x = 60; x <= 117; ++x) test::PaintPixel(source, x, y, test::kSkin);
    }
    ExpectAsPlain(40);
    EXPECT_TRUE(IsWhite(60, 75)) << "the face has gone";
    EXPECT_TRUE(IsSource(2, 100)) << "and the backdrop stays";
    EXPECT_GT(WhitePixels(), 120 * 150 / 5);
}

TEST_F(Background, UnderAFifthOfThePicturePassesItThrough) {
    ASSERT_TRUE(source.Create(100, 100, 3, kDepth8u, 0));
    g_faceRecord = {50, 50, 40, 40};
    // A stripe of backdrop along the upper and right edges, the rest person.
    for (const int32 stripe : {10, 12}) {
        for (int32 y = 0; y < 100; ++y) {
            for (int32 x = 0; x < 100; ++x) {
                const bool backdrop = y >= 100 - stripe || x >= 100 - stripe || (x < 2 && y > 40);
                test::PaintPixel(source, x, y, backdrop ? test::kBlueBackdrop : test::kSkin);
            }
        }
        ExpectAsPlain(40);
        // 10 pixels: 1900 of the stripe and 98 of the left edge, which hangs together with it.
        const bool enough = stripe == 12;
        EXPECT_EQ(WhitePixels() > 0, enough) << stripe;
        if (!enough) {
            ExpectPassedThrough();
            EXPECT_EQ(+*test::PixelAt(mask, 97, 97), 0) << "the mask stays as far as it had come";
            EXPECT_EQ(+*test::PixelAt(mask, 50, 50), 255);
        }
    }
}

TEST_F(Background, EnclosedByThePersonStays) {
    Draw({});
    for (int32 y = 20; y < 34; ++y) {
        for (int32 x = 50; x < 70; ++x) test::PaintPixel(source, x, y, test::kBlueBackdrop);
    }
    ASSERT_EQ(Run(40), kSuccess);
    EXPECT_TRUE(IsSource(60, 27));
    EXPECT_TRUE(IsWhite(117, 147));
}

TEST_F(Background, WithTheCropOnTheFaceIsInTheMiddle) {
    Draw({.width = 121, .height = 151});
    g_faceRecord.centreX = 3; // where the face was before the picture was cut
    g_faceRecord.centreY = 700;
    g_actionEnabled[kSlotCrop] = 1;
    ExpectAsPlain(40);
    EXPECT_TRUE(IsSource(60, 75));
    EXPECT_TRUE(IsWhite(117, 147));
}

TEST_F(Background, IsThatOfThePlainFormForAllTolerances) {
    for (const test::Bgr backdrop : {test::kBlueBackdrop, test::kGreyBackdrop, test::Bgr{8, 9, 12}}) {
        for (const int32 tolerance : {5, 6, 20, 40, 50, 75, 99, 120, 200, 1000, kMost}) {
            SCOPED_TRACE("tolerance " + std::to_string(tolerance));
            Draw({.width = 90, .height = 110, .backdrop = backdrop, .noise = 9});
            ExpectAsPlain(tolerance);
        }
    }
}

TEST_F(Background, BeyondTheDialogsTolerancesTellsOfRefusedBands) {
    Draw({.width = 40, .height = 40, .noise = 9});
    ExpectAsPlain(1000);
    EXPECT_EQ(told.find("Assertion Failed -18 \n"), 0u) << told;
}

TEST_F(Background, OfLargePicturesIsThatOfThePlainForm) {
    // Above 65,536 pixels the bands are looked up.
    for (const int32 tolerance : {5, 40, 99, 1000}) {
        SCOPED_TRACE("tolerance " + std::to_string(tolerance));
        Draw({.width = 271, .height = 250, .noise = 20});
        ExpectAsPlain(tolerance, {900, 700});
    }
}

TEST_F(Background, OfRandomPicturesIsThatOfThePlainForm) {
    test::Random random(2);
    for (int32 i = 0; i < 12; ++i) {
        test::MakeRandomPicture(source, random.Int(3, 60), random.Int(3, 60), 3, static_cast<std::uint32_t>(i));
        g_faceRecord = {random.Int(-10, 70), random.Int(-10, 70), random.Int(-3, 80), random.Int(-3, 80)};
        if (g_faceRecord.faceWidth == 0 || g_faceRecord.faceHeight == 0) continue;
        SCOPED_TRACE("picture " + std::to_string(i));
        ExpectAsPlain(random.Int(5, 99));
    }
}

TEST_F(Background, SmoothsTheMaskAtASizeThatGoesByTheOriginal) {
    for (const ImageSize& original : {ImageSize{0, 0}, ImageSize{299, 4000}, ImageSize{4000, 299}, ImageSize{300, 300},
                                      ImageSize{-5, -5}, ImageSize{801, 300}, ImageSize{1024, 768}}) {
        SCOPED_TRACE(std::to_string(original.width) + " by " + std::to_string(original.height));
        Draw({.width = 80, .height = 70, .noise = 5});
        ExpectAsPlain(40, original);
    }
}

TEST_F(Background, OfAnAbsurdOriginalPassesThePictureThrough) {
    Draw({.width = 80, .height = 70});
    for (const ImageSize& original : {ImageSize{kMost, kMost}, ImageSize{kMost, 300}}) {
        EXPECT_EQ(Run(40, original), kSuccess);
        ExpectPassedThrough();
    }
}

TEST_F(Background, OfFacesAnywhereReachesNothingOutsideThePlanes) {
    const FaceRecord faces[] = {
        {0, 0, 40, 40},         {89, 69, 40, 40},         {-5, 30, 30, 30},        {45, 75, 30, 30},
        {-500, -500, 40, 40},   {500, 30, 40, 40},        {45, 35, 1, 1},          {45, 35, 2, 2},
        {0, 0, 1, 1},           {45, 35, 5000, 5000},     {45, 35, 1, 5000},       {45, 35, -20, -20},
        {kMost, kMost, 40, 40}, {kLeast, kLeast, 40, 40}, {45, 35, kMost, kMost},  {45, 35, kLeast, kLeast},
        {kMost, 35, kMost, 30}, {kLeast, 35, kMost, 30},  {kLeast, 0, kLeast, -1}, {kMost, 0, kLeast, 1},
        {45, 35, 3, 1},
    };
    for (const FaceRecord& face : faces) {
        SCOPED_TRACE(::testing::Message()
                     << face.faceWidth << " by " << face.faceHeight << " at " << face.centreX << ", " << face.centreY);
        Draw({.width = 90, .height = 70, .noise = 5});
        g_faceRecord = face;
        ExpectAsPlain(40);
    }
}

TEST_F(Background, OfAFaceBeyondThePictureIsAllThereIs) {
    Draw({.width = 90, .height = 70});
    g_faceRecord = {500, 500, 40, 40};
    EXPECT_EQ(Run(40), kSuccess);
    EXPECT_EQ(told, "Assertion Failed -11 \n") << "the flood's seed";
    EXPECT_EQ(WhitePixels(), 90 * 70);
}

TEST_F(Background, OfAFaceOfOnePixelHasNoCoreToPaint) {
    Draw({.width = 90, .height = 70});
    g_faceRecord = {45, 35, 1, 1};
    EXPECT_EQ(Run(40), kSuccess);
    EXPECT_EQ(told, "Assertion Failed -6 \n");
    EXPECT_TRUE(IsSource(45, 35)) << "the seed alone finds the person";
}

TEST_F(Background, OfTinyPicturesReachesNothingOutsideThePlanes) {
    for (int32 width = 1; width <= 6; ++width) {
        for (int32 height = 1; height <= 6; ++height) {
            SCOPED_TRACE(std::to_string(width) + " by " + std::to_string(height));
            test::MakeRandomPicture(source, width, height, 3, 4);
            g_faceRecord = {width / 2, height / 2, 3, 3};
            ExpectAsPlain(40);
        }
    }
    for (const ImageSize& size : {ImageSize{1, 200}, ImageSize{200, 1}, ImageSize{2, 90}, ImageSize{90, 2}}) {
        test::MakeRandomPicture(source, size.width, size.height, 3, 4);
        g_faceRecord = {size.width / 2, size.height / 2, 30, 30};
        ExpectAsPlain(40);
    }
}

TEST_F(Background, OfASourceThatIsNoPicturePassesThrough) {
    g_faceRecord = {10, 10, 10, 10};
    EXPECT_EQ(Run(40), kSuccess);
    EXPECT_EQ(destination.data, nullptr);
    test::MakeRandomPicture(source, 30, 20, 1, 1);
    EXPECT_EQ(Run(40), kSuccess);
    ExpectPassedThrough();
}

TEST_F(Background, WithTooLittleMemoryPassesThroughOrHasNoStorage) {
    Draw({.width = 30, .height = 20});
    ASSERT_EQ(Run(40), kSuccess);
    ImageBuffer good;
    good.CopyFrom(destination);
    bool whole = false;
    for (int32 allowed = 0; !whole; ++allowed) {
        ASSERT_LT(allowed, 100);
        int32 status = 0;
        destination.Reset();
        told = test::Printed([&] {
            const test::HeapLimit limit(allowed);
            status = ActionRemoveBackground(source, destination, mask, 40, 0, 0);
        });
        EXPECT_EQ(status, kSuccess);
        if (destination.data == nullptr) continue;
        whole = test::SamePicture("", "", destination, good);
        const bool coarse = told.find("Assertion Failed -9 \n") != std::string::npos; // a filter had no memory
        EXPECT_TRUE(whole || coarse || test::SamePicture("", "", destination, source)) << "with " << allowed;
        EXPECT_FALSE(IsWhite(15, 10)) << "the face has gone with " << allowed;
    }
}

} // namespace
} // namespace orvane
