// The smoothing of the mask, and the picture that it cuts out.
#include "actions/background_refine.h"

#include "primitives/primitives.h"
#include "tests/support/bit_planes.h"
#include "tests/support/heap_limit.h"
#include "tests/support/pictures.h"
#include "tests/support/portrait.h"
#include "tests/support/printed.h"
#include "tests/support/slot_guard.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <type_traits>

namespace orvane {
namespace {

/// The filters that ran, one letter each, and the size that they ran at.
std::string g_filters;
ImageSize g_filterSize;
int32 g_frameDuringErosion, g_frameDuringBlur;

int32 RecordErode(uint8* plane, int32 step, ImageSize roi, const uint8* mask, ImageSize maskSize, ImagePoint anchor) {
    g_filters += mask[0] != 0 ? 'x' : '+';
    g_filterSize = roi;
    g_frameDuringErosion = *(plane - step - 1);
    return generic::primErode_8u_C1I(plane, step, roi, mask, maskSize, anchor);
}

int32 RecordErode3x3(uint8* plane, int32 step, ImageSize roi) {
    g_filters += '3';
    return generic::primErode3x3_8u_C1I(plane, step, roi);
}

int32 RecordBox(uint8* plane, int32 step, ImageSize roi, ImageSize maskSize, ImagePoint anchor) {
    g_filters += maskSize.width == 3 && maskSize.height == 3 && anchor.x == 1 && anchor.y == 1 ? 'b' : '?';
    g_frameDuringBlur = *(plane - step - 1);
    return generic::primFilterBox_8u_C1I(plane, step, roi, maskSize, anchor);
}

class Refinement : public ::testing::Test {
protected:
    Refinement() {
        g_filters.clear();
        test::MakeRandomPicture(source, 90, 60, 3, 1);
        test::MakeRandomPicture(mask, 7, 5, 1, 1);
        EXPECT_TRUE(destination.Create(90, 60, 3, kDepth8u, 0));
    }

    bool Refine(int32 passes = 2, bool soften = true, ImageSize original = {0, 0}) {
        RegionMask regions;
        test::MakeBitPlane(regions.subject, {90, 60}, isSubject);
        test::MakeBitPlane(regions.background, {90, 60}, [&](int32 x, int32 y) { return !isSubject(x, y); });
        return RefineAndComposite(source, destination, analyzer, regions, mask, passes, soften, original.width,
                                  original.height);
    }

    std::function<bool(int32, int32)> isSubject = [](int32, int32) { return true; };
    ImageBuffer source, destination, mask;
    BackgroundAnalyzer analyzer;

private:
    test::SlotGuard<std::remove_pointer_t<decltype(primErode_8u_C1I)>> erode_{primErode_8u_C1I, RecordErode};
    test::SlotGuard<std::remove_pointer_t<decltype(primErode3x3_8u_C1I)>> erode3x3_{primErode3x3_8u_C1I,
                                                                                    RecordErode3x3};
    test::SlotGuard<std::remove_pointer_t<decltype(primFilterBox_8u_C1I)>> box_{primFilterBox_8u_C1I, RecordBox};
};

TEST_F(Refinement, WorksAtASizeThatGoesByTheOriginal) {
    struct Case {
        ImageSize original, work;
    };
    for (const Case& c :
         {Case{{0, 0}, {300, 300}}, Case{{299, 2000}, {300, 300}}, Case{{2000, 299}, {300, 300}},
          Case{{-1, -1}, {300, 300}}, Case{{300, 300}, {450, 450}}, Case{{301, 303}, {451, 454}},
          Case{{640, 480}, {960, 720}}, Case{{799, 600}, {1198, 900}}, Case{{800, 599}, {1200, 898}},
          Case{{800, 600}, {243, 182}}, Case{{1024, 768}, {311, 233}}, Case{{4000, 3000}, {1213, 910}}}) {
        EXPECT_TRUE(Refine(0, true, c.original));
        EXPECT_EQ(g_filterSize.width, c.work.width) << c.original.width << " by " << c.original.height;
        EXPECT_EQ(g_filterSize.height, c.work.height) << c.original.width << " by " << c.original.height;
    }
}

TEST_F(Refinement, ErodesEightTimesAndBlursThirteen) {
    EXPECT_TRUE(Refine());
    EXPECT_EQ(g_filters, "x+3x+3x+bbbbbbbbbbbbb");
    EXPECT_EQ(g_frameDuringErosion, 255) << "nothing eats in from the edges";
    EXPECT_EQ(g_frameDuringBlur, 0) << "the frame counts as background";
}

TEST_F(Refinement, ErodesAndBlursByThePasses) {
    EXPECT_TRUE(Refine(0));
    EXPECT_EQ(g_filters, "x+b");
    g_filters.clear();
    EXPECT_TRUE(Refine(1));
    EXPECT_EQ(g_filters, "x+3x+bbbbbbb");
}

TEST_F(Refinement, OfAMaskWithoutBackgroundKeepsThePictureOnceTheBlurHasPassedTheFrame) {
    EXPECT_TRUE(Refine());
    EXPECT_SAME_PICTURE(destination, source);
}

TEST_F(Refinement, OfAMaskOfBackgroundIsTheFillLevel) {
    isSubject = [](int32, int32) { return false; };
    analyzer.fillLevel = 40;
    EXPECT_TRUE(Refine());
    ImageBuffer expected;
    ASSERT_TRUE(expected.Create(90, 60, 3, kDepth8u, 0));
    expected.Fill(40.0);
    EXPECT_SAME_PICTURE(destination, expected);
}

TEST_F(Refinement, TakesAwayWhatIsThinnerThanTheErosion) {
    isSubject = [](int32 x, int32) { return x == 45; }; // 3 columns of 300
    EXPECT_TRUE(Refine());
    EXPECT_EQ(+*test::PixelAt(mask, 45, 30), 0);
}

TEST_F(Refinement, BringsAStraightEdgeBackOutByTheBlur) {
    isSubject = [](int32, int32 y) { return y >= 30; };
    EXPECT_TRUE(Refine());
    // Of the 8 rows of 300 that the erosion takes the blur gives back those where it stays above 0.
    int32 edge = 0;
    while (*test::PixelAt(mask, 45, edge) == 0) ++edge;
    EXPECT_GE(edge, 28);
    EXPECT_LE(edge, 31);
    for (int32 y = 0; y < 60; ++y) {
        const bool shown = *test::PixelAt(mask, 45, y) != 0;
        EXPECT_EQ(shown, y >= edge) << y;
        EXPECT_EQ(*test::PixelAt(destination, 45, y) == *test::PixelAt(source, 45, y), shown) << y;
    }
}

TEST_F(Refinement, ScalesBackLinearlyOnlyWhenSoftened) {
    isSubject = [](int32, int32 y) { return y >= 30; };
    ImageBuffer soft;
    EXPECT_TRUE(Refine(2, true));
    soft.CopyFrom(mask);
    EXPECT_TRUE(Refine(2, false));
    EXPECT_FALSE(test::SamePicture("", "", soft, mask));
}

TEST_F(Refinement, WithoutStorageIsRefused) {
    RegionMask regions;
    test::MakeBitPlane(regions.subject, {90, 60}, isSubject);
    ASSERT_TRUE(regions.background.Create({90, 60}));
    for (int32 allowed = 0; allowed < 6; ++allowed) { // rows, columns, levels, scaled and framed mask, the mask itself
        const test::HeapLimit limit(allowed);
        EXPECT_FALSE(RefineAndComposite(source, destination, analyzer, regions, mask, 2, true, 0, 0)) << allowed;
    }
    destination.Reset();
    EXPECT_FALSE(Refine());
}

TEST(Border, SurroundsThePixels) {
    ImageBuffer image;
    test::MakeRandomPicture(image, 7, 5, 1, 1);
    for (const int32 thickness : {0, 1, 3}) {
        const ImageBuffer framed = AddBorder(image, thickness, 9);
        ASSERT_EQ(framed.width, 7 + 2 * thickness);
        ASSERT_EQ(framed.height, 5 + 2 * thickness);
        for (int32 y = 0; y < framed.height; ++y) {
            for (int32 x = 0; x < framed.width; ++x) {
                const int32 fromX = x - thickness, fromY = y - thickness;
                const bool inside = fromX >= 0 && fromY >= 0 && fromX < 7 && fromY < 5;
                ASSERT_EQ(+*test::PixelAt(framed, x, y), inside ? +*test::PixelAt(image, fromX, fromY) : 9);
            }
        }
    }
}

TEST(Border, OfSignedPixelsIsSigned) {
    ImageBuffer image;
    ASSERT_TRUE(image.Create(3, 2, 1, kDepth16s, 0));
    image.Fill(-300.0);
    const ImageBuffer framed = AddBorder(image, 1, -7);
    ASSERT_EQ(framed.depth, kDepth16s);
    const auto* rows = reinterpret_cast<const int16*>(framed.data);
    EXPECT_EQ(rows[0], -7);
    EXPECT_EQ(reinterpret_cast<const int16*>(framed.data + framed.Step())[1], -300);
}

TEST(Border, OfOtherFormsIsAnImageOfZeros) {
    for (const DepthCode depth : {kDepth16u, kDepth32f}) {
        ImageBuffer image;
        ASSERT_TRUE(image.Create(3, 2, 1, depth, 0));
        const ImageBuffer framed = AddBorder(image, 1, 200);
        EXPECT_EQ(framed.width, 5);
        EXPECT_EQ(framed.depth, depth);
        for (int32 i = 0; i < framed.Step() * 4; ++i) ASSERT_EQ(+framed.data[i], 0);
    }
    ImageBuffer colour;
    test::MakeRandomPicture(colour, 3, 2, 3, 1);
    const ImageBuffer framed = AddBorder(colour, 1, 200);
    EXPECT_EQ(framed.channels, 3);
    for (int32 i = 0; i < framed.Step() * 4; ++i) ASSERT_EQ(+framed.data[i], 0);
}

TEST(Border, OfAbsurdThicknessHasNoStorage) {
    ImageBuffer image;
    test::MakeRandomPicture(image, 7, 5, 1, 1);
    for (const int32 thickness : {2147483647, -2147483647 - 1, -4, 1 << 20}) {
        EXPECT_EQ(AddBorder(image, thickness, 9).data, nullptr) << thickness;
    }
    EXPECT_EQ(test::Printed([&] { EXPECT_NE(AddBorder(image, -1, 9).data, nullptr); }), "Assertion Failed -6 \n");
}

TEST(BorderRing, IsTheOutermostRowsAndColumns) {
    for (const int32 thickness : {1, 2, 50}) {
        ImageBuffer image, before;
        test::MakeRandomPicture(image, 9, 7, 1, 1);
        before.CopyFrom(image);
        FillBorderRing(image, thickness, 33);
        for (int32 y = 0; y < 7; ++y) {
            for (int32 x = 0; x < 9; ++x) {
                const bool ring = x < thickness || y < thickness || x == 8 || y == 6;
                ASSERT_EQ(+*test::PixelAt(image, x, y), ring ? 33 : +*test::PixelAt(before, x, y))
                    << x << ", " << y << " with " << thickness;
            }
        }
    }
}

TEST(BorderRing, OfOtherFormsOrOfNoThicknessChangesNothing) {
    ImageBuffer colour, before;
    test::MakeRandomPicture(colour, 9, 7, 3, 1);
    before.CopyFrom(colour);
    FillBorderRing(colour, 1, 33);
    EXPECT_SAME_PICTURE(colour, before);
    test::MakeRandomPicture(colour, 9, 7, 1, 1);
    before.CopyFrom(colour);
    EXPECT_EQ(test::Printed([&] { FillBorderRing(colour, 0, 33); }).find("Assertion Failed -6 \n"), 0u);
    EXPECT_SAME_PICTURE(colour, before);
}

} // namespace
} // namespace orvane
