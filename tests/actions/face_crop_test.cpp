// The crop around the face: where it lies, and what it copies.
#include "actions/face_crop.h"

#include "image/result_codes.h"
#include "tests/reference/actions.h"
#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/settings_guard.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace orvane {
namespace {

constexpr int32 kMost = std::numeric_limits<int32>::max();
constexpr int32 kLeast = std::numeric_limits<int32>::min();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

class FaceCrop : public ::testing::Test {
protected:
    ImageBuffer source, destination;

private:
    test::FreshSettings fresh_;
};

void SetFactors(float width, float height) {
    g_cropWidthFactor = width;
    g_cropHeightFactor = height;
}

std::string Text(const ImageRect& r) {
    return std::to_string(r.width) + " by " + std::to_string(r.height) + " at (" + std::to_string(r.x) + ", " +
           std::to_string(r.y) + ")";
}

TEST_F(FaceCrop, LiesWhereTheFormulasSay) {
    struct Case {
        const char* what;
        FaceRecord face;
        float widthFactor, heightFactor;
        ImageSize picture;
        ImageRect expected;
    };
    const Case cases[] = {
        {"inside the picture", {320, 240, 100, 100}, 0.6F, 0.8F, {640, 480}, {230, 120, 180, 240}},
        {"as high as the ratio says", {320, 240, 100, 100}, 0.5F, 0.75F, {640, 480}, {245, 128, 148, 225}},
        {"the whole width, less the first column, in fours",
         {320, 240, 300, 300},
         1.0F,
         0.8F,
         {640, 480},
         {1, 1, 636, 479}},
        {"exactly as wide as the picture", {320, 240, 100, 100}, 2.0F, 0.8F, {600, 480}, {20, 120, 580, 240}},
        {"ending exactly at the right edge", {550, 240, 100, 100}, 0.6F, 0.8F, {640, 480}, {460, 120, 180, 240}},
        {"ending a pixel before the right edge", {549, 240, 100, 100}, 0.6F, 0.8F, {640, 480}, {459, 120, 180, 240}},
        {"ending a pixel past the right edge", {551, 240, 100, 100}, 0.6F, 0.8F, {640, 480}, {461, 120, 176, 240}},
        {"past the top stored row", {320, 400, 100, 100}, 0.6F, 0.8F, {640, 480}, {230, 280, 180, 200}},
        {"sliding in from the left, not cut", {60, 240, 100, 100}, 0.6F, 0.8F, {640, 480}, {1, 120, 180, 240}},
        {"sliding in from the bottom, not cut", {320, 60, 100, 100}, 0.6F, 0.8F, {640, 480}, {230, 1, 180, 240}},
        {"smaller than the face", {320, 240, 100, 100}, 0.1F, 0.1F, {640, 480}, {305, 225, 28, 30}},
        {"of a face of odd size", {101, 99, 41, 41}, 0.6F, 0.8F, {640, 480}, {65, 51, 72, 98}},
        {"of a face that is not square", {320, 240, 50, 200}, 0.6F, 0.5F, {640, 480}, {275, 90, 88, 300}},
        {"of the smallest face with four columns", {10, 10, 2, 2}, 0.6F, 0.8F, {640, 480}, {8, 8, 4, 5}},
        {"of a face larger than the picture", {320, 240, 5000, 5000}, 0.6F, 0.8F, {640, 480}, {1, 1, 636, 479}},
        {"of a face left of and below the picture", {-500, -500, 100, 100}, 0.6F, 0.8F, {640, 480}, {1, 1, 180, 240}},
        {"of an endless ratio", {320, 240, 100, 100}, kInfinity, kInfinity, {640, 480}, {1, 1, 636, 479}},
        {"of a ratio that is no number", {320, 240, 100, 100}, kNotANumber, kNotANumber, {640, 480}, {1, 1, 636, 479}},
    };
    for (const Case& c : cases) {
        SetFactors(c.widthFactor, c.heightFactor);
        g_faceRecord = c.face;
        EXPECT_EQ(Text(FaceCropRect(c.picture)), Text(c.expected)) << c.what;
    }
}

TEST_F(FaceCrop, HasNoPixelsWhereNothingIsLeft) {
    struct Case {
        const char* what;
        FaceRecord face;
        float widthFactor, heightFactor;
        ImageSize picture;
    };
    const Case cases[] = {
        {"a face of one pixel gives two columns, and two are none", {10, 10, 1, 1}, 0.6F, 0.8F, {640, 480}},
        {"a crop ratio of zero", {320, 240, 100, 100}, 0.0F, 0.0F, {640, 480}},
        {"a crop ratio below zero", {320, 240, 100, 100}, -0.6F, -0.8F, {640, 480}},
        {"a face right of the picture", {1000, 240, 100, 100}, 0.6F, 0.8F, {640, 480}},
        {"a face above the picture", {320, 1000, 100, 100}, 0.6F, 0.8F, {640, 480}},
        {"a picture of one pixel", {0, 0, 1, 1}, 0.6F, 0.8F, {1, 1}},
        {"a picture four pixels wide", {2, 50, 4, 4}, 1.0F, 0.8F, {4, 100}},
        {"a face of less than no size", {320, 240, -100, -100}, 0.6F, 0.8F, {640, 480}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SetFactors(c.widthFactor, c.heightFactor);
        g_faceRecord = c.face;
        const ImageRect crop = FaceCropRect(c.picture);
        EXPECT_TRUE(crop.width == 0 || crop.height == 0) << Text(crop);
        test::MakeRandomPicture(source, c.picture.width, c.picture.height, 3, 1);
        EXPECT_EQ(ActionFaceCrop(source, destination), kOutOfMemory);
        EXPECT_EQ(destination.data, nullptr);
    }
}

TEST_F(FaceCrop, NeverLeavesThePictureWhateverTheFaceAndTheFactors) {
    const int32 numbers[] = {kLeast, kLeast + 1, -100, -1, 1, 2, 7, 100, 639, 641, 1 << 30, kMost - 1, kMost};
    const float factors[] = {-kInfinity, -1e30F, -1.0F, 0.0F,      1e-30F,     0.01F,
                             0.75F,      20.0F,  1e30F, kInfinity, kNotANumber};
    const ImageSize pictures[] = {{1, 1}, {5, 3}, {640, 480}, {32767, 1}, {1, 32767}};
    for (const int32 centre : numbers) {
        for (const int32 size : numbers) {
            for (const float factor : factors) {
                for (const ImageSize& picture : pictures) {
                    g_faceRecord = {centre, centre, size, size};
                    SetFactors(factor, factor);
                    const ImageRect crop = FaceCropRect(picture);
                    ASSERT_TRUE(crop.width >= 0 && crop.height >= 0 && crop.width % 4 == 0) << Text(crop);
                    if (crop.width == 0 || crop.height == 0) continue;
                    ASSERT_TRUE(crop.x >= 1 && crop.y >= 1 && crop.width <= picture.width - crop.x &&
                                crop.height <= picture.height - crop.y)
                        << Text(crop) << " of a face of " << size << " at " << centre << " by " << factor << " in "
                        << picture.width << " by " << picture.height;
                }
            }
        }
    }
}

TEST_F(FaceCrop, AgreesWithThePlainFormEverywhere) {
    test::Random random(3);
    for (int32 i = 0; i < 3000; ++i) {
        const ImageSize picture{random.Int(1, 700), random.Int(1, 700)};
        g_faceRecord = {random.Int(-100, 800), random.Int(-100, 800), random.Int(1, 500), random.Int(1, 500)};
        SetFactors(static_cast<float>(random.Real(0.0, 2.0)), static_cast<float>(random.Real(0.0, 2.0)));
        ImageRect expected = test::reference::CropRect(g_faceRecord, g_cropWidthFactor, g_cropHeightFactor, picture);
        expected.width = std::max(expected.width, 0);
        expected.height = std::max(expected.height, 0);
        ASSERT_EQ(Text(FaceCropRect(picture)), Text(expected))
            << "face " << g_faceRecord.faceWidth << " by " << g_faceRecord.faceHeight << " at " << g_faceRecord.centreX
            << ", " << g_faceRecord.centreY << " in " << picture.width << " by " << picture.height;
    }
}

TEST_F(FaceCrop, CopiesThePixelsOfItsRectangle) {
    test::MakeRandomPicture(source, 163, 121, 3, 5); // rows with padding
    for (const FaceRecord& face :
         {FaceRecord{80, 60, 30, 30}, FaceRecord{5, 5, 20, 44}, FaceRecord{160, 118, 31, 31}}) {
        g_faceRecord = face;
        ImageBuffer expected;
        ASSERT_EQ(test::reference::FaceCrop(source, expected), kSuccess);
        EXPECT_EQ(ActionFaceCrop(source, destination), kSuccess);
        EXPECT_SAME_PICTURE(destination, expected);
        EXPECT_EQ(destination.channels, 3);
    }
}

TEST_F(FaceCrop, NeedsAFace) {
    test::MakeRandomPicture(source, 64, 48, 3, 5);
    for (const FaceRecord& face : {FaceRecord{}, FaceRecord{30, 20, 0, 10}, FaceRecord{30, 20, 10, 0}}) {
        test::MakeRandomPicture(destination, 9, 7, 3, 8);
        ImageBuffer before;
        before.CopyFrom(destination);
        g_faceRecord = face;
        EXPECT_EQ(ActionFaceCrop(source, destination), kNoFace);
        EXPECT_SAME_PICTURE(destination, before);
    }
}

TEST_F(FaceCrop, LeavesSourceAndFaceAlone) {
    test::MakeRandomPicture(source, 64, 48, 3, 5);
    ImageBuffer before;
    before.CopyFrom(source);
    g_faceRecord = {30, 20, 10, 12};
    ASSERT_EQ(ActionFaceCrop(source, destination), kSuccess);
    EXPECT_SAME_PICTURE(source, before);
    EXPECT_EQ(g_faceRecord.centreX, 30);
    EXPECT_EQ(g_faceRecord.centreY, 20);
    EXPECT_EQ(g_faceRecord.faceWidth, 10);
    EXPECT_EQ(g_faceRecord.faceHeight, 12);
}

TEST_F(FaceCrop, WithoutMemoryIsRefused) {
    test::MakeRandomPicture(source, 64, 48, 3, 5);
    g_faceRecord = {30, 20, 10, 10};
    const test::HeapLimit none(0);
    EXPECT_EQ(ActionFaceCrop(source, destination), kOutOfMemory);
    EXPECT_EQ(destination.data, nullptr);
}

TEST_F(FaceCrop, OfAPictureWithoutPixelsFailsAndLeavesTheFillLevel) {
    test::MakeRandomPicture(source, 640, 480, 3, 5);
    source.Release(); // the shape stays
    g_faceRecord = {320, 240, 100, 100};
    g_fillLevel = 77;
    EXPECT_EQ(ActionFaceCrop(source, destination), kCopyFailed);
    ASSERT_EQ(destination.width, 180);
    ASSERT_EQ(destination.height, 240);
    ImageBuffer expected;
    ASSERT_TRUE(expected.Create(180, 240, 3, kDepth8u, 0));
    expected.Fill(77.0);
    EXPECT_SAME_PICTURE(destination, expected);
}

} // namespace
} // namespace orvane
