// The pictures of the preview: scaled, with the rectangle or "?" on them.
#include "tests/reference/preview.h"
#include "tests/session/window_fixture.h"
#include "tests/support/random.h"

#include <climits>
#include <cstring>

namespace orvane {
namespace {

using test::FakeWindow;
using test::ShownPicture;
namespace reference = test::reference;

constexpr ColourRef kYellow = 0x00FFFF;

class Overlay : public test::WindowTest {
protected:
    static Bitmap RandomBitmap(int32 width, int32 height, std::uint32_t seed = 1) {
        Bitmap bitmap;
        EXPECT_TRUE(bitmap.Create(width, height));
        test::Scene scene = test::BlankScene(width, height, 128);
        test::Random random(seed);
        test::AddTexture(scene, 120, random);
        std::memcpy(bitmap.Bits(), scene.rows.data(), scene.rows.size());
        return bitmap;
    }
    static ShownPicture Copy(const Bitmap& bitmap) { return ShownPicture(ViewOf(bitmap)); }

    /// The overlay of this bitmap with the present marks must be the picture with this rectangle.
    void ExpectRectangle(const Bitmap& bitmap, double left, double top, double right, double bottom) {
        ShownPicture expected = reference::Stretched(
            Copy(bitmap), reference::Fitted(bitmap.Size(), {session.m_previewWidth, session.m_previewHeight}));
        reference::DrawRectangle(expected, left, top, right, bottom, kYellow);
        EXPECT_TRUE(Copy(session.RenderPreviewOverlay(bitmap, 0)) == expected);
        EXPECT_TRUE(windows.texts.empty());
    }
    void ExpectPlain(const Bitmap& bitmap) {
        EXPECT_TRUE(Copy(session.RenderPreviewOverlay(bitmap, 0)) == Copy(session.ScaleBitmapToPreview(bitmap)));
    }
    void SetRectangle(int32 left, int32 top, int32 right, int32 bottom) {
        session.m_anchorLeft = session.m_markLeft = left;
        session.m_anchorTop = session.m_markTop = top;
        session.m_anchorRight = session.m_markRight = right;
        session.m_anchorBottom = session.m_markBottom = bottom;
    }
};

TEST_F(Overlay, APictureFitsTheLimitWithItsProportions) {
    for (const ImageSize limit : {ImageSize{400, 400}, {450, 337}, {150, 150}, {1, 1}, {400, 3}}) {
        for (int32 width = 1; width < 60; width += 3) {
            for (int32 height = 1; height < 60; height += 4) {
                const ImageSize fitted = FitInside({width, height}, limit);
                const ImageSize expected = reference::Fitted({width, height}, limit);
                ASSERT_EQ(fitted.width, expected.width) << width << " by " << height;
                ASSERT_EQ(fitted.height, expected.height) << width << " by " << height;
            }
        }
    }
}

TEST_F(Overlay, AnAspectOfTheVeryLimitKeepsTheHeight) {
    // 3 by 7 into 300 by 700: truncate(700 x (3 / 7)) is the width, by the second branch.
    const ImageSize fitted = FitInside({3, 7}, {300, 700});
    EXPECT_EQ(fitted.width, static_cast<int32>(700 * (3.0 / 7)));
    EXPECT_EQ(fitted.height, 700);
    EXPECT_EQ(FitInside({400, 400}, {400, 400}).width, 400);
}

TEST_F(Overlay, NoSizeFitsWhereAPictureOrTheLimitHasNone) {
    for (const ImageSize none : {ImageSize{0, 5}, {5, 0}, {-3, 5}, {0, 0}}) {
        EXPECT_EQ(FitInside(none, {10, 10}).width, 0);
        EXPECT_EQ(FitInside({10, 10}, none).height, 0);
    }
    EXPECT_EQ(FitInside({10'000, 1}, {400, 400}).height, 0) << "nothing is left of a thin picture";
}

TEST_F(Overlay, StretchingTakesThePixelUnderTheMiddle) {
    for (const ImageSize from : {ImageSize{1, 1}, {2, 3}, {7, 5}, {40, 31}, {33, 1}, {1, 33}}) {
        const Bitmap bitmap = RandomBitmap(from.width, from.height);
        for (const ImageSize to : {ImageSize{1, 1}, {3, 2}, {7, 5}, {40, 31}, {79, 64}, {1, 50}, {50, 1}}) {
            SCOPED_TRACE(::testing::Message()
                         << from.width << " by " << from.height << " to " << to.width << " by " << to.height);
            EXPECT_TRUE(Copy(Stretched(bitmap, to)) == reference::Stretched(Copy(bitmap), to));
        }
        EXPECT_TRUE(Copy(Stretched(bitmap, from)) == Copy(bitmap)) << "its own size is a copy";
    }
}

TEST_F(Overlay, NothingIsStretchedToNoSizeOrFromAnEmptyBitmap) {
    const Bitmap bitmap = RandomBitmap(4, 4);
    for (const ImageSize none : {ImageSize{0, 4}, {4, 0}, {-1, 4}, {INT_MAX, INT_MAX}}) {
        EXPECT_TRUE(Stretched(bitmap, none).IsEmpty());
    }
    EXPECT_TRUE(Stretched(Bitmap(), {4, 4}).IsEmpty());
}

TEST_F(Overlay, ARectangleIsDrawnWithThreePixelsFromAnyCorner) {
    const Corners kCorners[] = {{5, 6, 20, 15},   {20, 15, 5, 6},  {5, 15, 20, 6},   {0, 0, 39, 30},
                                {8, 8, 8, 8},     {8, 8, 9, 8},    {-1, -1, 40, 31}, {-2, -2, 41, 32},
                                {-50, 4, 90, 10}, {3, -50, 4, 90}, {50, 50, 60, 60}, {39, 30, 39, 30}};
    for (const Corners& c : kCorners) {
        SCOPED_TRACE(::testing::Message() << c.left << ' ' << c.top << ' ' << c.right << ' ' << c.bottom);
        Bitmap bitmap = RandomBitmap(40, 31);
        ShownPicture expected = Copy(bitmap);
        DrawRectangle(bitmap, c, 0x0A0B0C);
        reference::DrawRectangle(expected, c.left, c.top, c.right, c.bottom, 0x0A0B0C);
        EXPECT_TRUE(Copy(bitmap) == expected);
    }
}

TEST_F(Overlay, ARectangleMayReachAsFarAsNumbersGo) {
    const Corners kCorners[] = {{INT_MIN, INT_MIN, INT_MAX, INT_MAX},
                                {INT_MAX, INT_MIN, INT_MIN, 5},
                                {INT_MAX, INT_MAX, INT_MAX, INT_MAX},
                                {7, INT_MIN, INT_MIN, INT_MAX}};
    for (const Corners& c : kCorners) {
        Bitmap bitmap = RandomBitmap(9, 8);
        ShownPicture expected = Copy(bitmap);
        DrawRectangle(bitmap, c, kYellow);
        reference::DrawRectangle(expected, c.left, c.top, c.right, c.bottom, kYellow);
        EXPECT_TRUE(Copy(bitmap) == expected);
    }
    Bitmap empty;
    DrawRectangle(empty, {0, 0, 5, 5}, kYellow);
    EXPECT_TRUE(empty.IsEmpty());
}

TEST_F(Overlay, TheMarksStandAsAYellowRectangle) {
    session.m_previewWidth = 100;
    session.m_previewHeight = 75;
    const Bitmap bitmap = RandomBitmap(160, 120);
    SetRectangle(10, 20, 60, 70);
    ExpectRectangle(bitmap, 10, 20, 60, 70);
    SetRectangle(60, 70, 10, 20);
    ExpectRectangle(bitmap, 60, 70, 10, 20);
    EXPECT_EQ(Copy(session.RenderPreviewOverlay(bitmap, 0)).At(10, 40), kYellow);
    EXPECT_EQ(Copy(session.RenderPreviewOverlay(bitmap, 1)).At(10, 40), 0x00FF00U) << "the reserved green";
}

TEST_F(Overlay, ThePictureTouchesTheUpperLeftAndKeepsItsShape) {
    session.m_previewWidth = 100;
    session.m_previewHeight = 100;
    const Bitmap scaled = session.ScaleBitmapToPreview(RandomBitmap(160, 120));
    EXPECT_EQ(scaled.Width(), 100);
    EXPECT_EQ(scaled.Height(), 75);
}

TEST_F(Overlay, WithoutAFaceAQuestionMarkStandsInTheMiddle) {
    session.m_previewWidth = 401;
    session.m_previewHeight = 301;
    const Bitmap bitmap = RandomBitmap(160, 120);
    struct Case {
        const char* what;
        int32 anchorLeft, anchorRight, mouseX;
        bool question;
    };
    const Case kCases[] = {{"nothing", -1, -1, 50, true},
                           {"first corner at 0", 0, -1, 50, true},
                           {"first corner left", -7, -1, 50, true},
                           {"first corner", 1, -1, 50, false},
                           {"mouse at 0", 1, -1, 0, true},
                           {"mouse left of it", 1, -1, -3, true},
                           {"mouse at 1", 1, -1, 1, false},
                           {"second corner at 0", 9, 0, 50, true},
                           {"second corner left", 9, -2, 50, true},
                           {"complete from 0", 0, 9, 50, true},
                           {"complete", 9, 1, 0, false}};
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.what);
        SetRectangle(20, 20, 40, 40);
        session.m_anchorLeft = c.anchorLeft;
        session.m_anchorRight = c.anchorRight;
        session.m_mouseX = c.mouseX;
        windows.texts.clear();
        const ShownPicture overlay = Copy(session.RenderPreviewOverlay(bitmap, 0));
        EXPECT_EQ(overlay == Copy(session.ScaleBitmapToPreview(bitmap)), c.question) << "a rectangle or none";
        ASSERT_EQ(windows.texts.size(), c.question ? 1U : 0U);
        if (!c.question) continue;
        const test::WrittenText& text = windows.texts[0];
        EXPECT_EQ(text.text, L"?");
        EXPECT_EQ(text.colour, 0xFF3232U);
        EXPECT_EQ(text.picture.width, overlay.width);
        EXPECT_EQ(text.picture.height, overlay.height);
        EXPECT_EQ(text.fontHeight, overlay.height / 2);
        EXPECT_EQ(text.fontWidth, overlay.width / 5);
        EXPECT_EQ(text.x, static_cast<int32>(overlay.width * 0.5 - text.fontWidth * 0.5));
        EXPECT_EQ(text.y, static_cast<int32>(overlay.height * 0.5 - text.fontHeight * 0.5));
    }
}

TEST_F(Overlay, AMarkBelow0DrawsNothing) {
    session.m_previewWidth = session.m_previewHeight = 50;
    const Bitmap bitmap = RandomBitmap(50, 50);
    for (int32 COrvQuickViewDlg::*mark : {&COrvQuickViewDlg::m_markLeft, &COrvQuickViewDlg::m_markTop,
                                          &COrvQuickViewDlg::m_markRight, &COrvQuickViewDlg::m_markBottom}) {
        SetRectangle(10, 10, 30, 30);
        session.*mark = -1;
        ExpectPlain(bitmap);
        session.*mark = 0;
        EXPECT_FALSE(Copy(session.RenderPreviewOverlay(bitmap, 0)) == Copy(session.ScaleBitmapToPreview(bitmap)));
    }
    EXPECT_TRUE(windows.texts.empty());
}

TEST_F(Overlay, InALiveSessionTheMarksAreFramePixels) {
    session.m_sourceMode = COrvQuickViewDlg::kLiveMode;
    session.m_bitmapHeader.biWidth = 640;
    session.m_bitmapHeader.biHeight = 480;
    session.m_previewWidth = 400;
    session.m_previewHeight = 300;
    SetRectangle(100, 61, 203, 240);
    // By 400 / 640, rounded to nearest: 62.5, 38.125, 126.875 and 150.
    ExpectRectangle(RandomBitmap(640, 480), 63, 38, 127, 150);
}

TEST_F(Overlay, OfAnEmptyBitmapThereIsNone) {
    EXPECT_TRUE(session.RenderPreviewOverlay(Bitmap(), 0).IsEmpty());
    session.m_previewHeight = 0;
    EXPECT_TRUE(session.RenderPreviewOverlay(RandomBitmap(9, 9), 0).IsEmpty());
}

TEST_F(Overlay, ARubberBandFromColumn0IsAQuestionMarkUntilItIsComplete) {
    Run(test::BlankScene(160, 120), [this](FakeWindow& window) {
        window.Pump();
        window.Press(0, 50);
        windows.texts.clear();
        window.Move(100, 100);
        EXPECT_EQ(windows.texts.size(), 1U);
        window.Press(100, 100);
        EXPECT_TRUE(window.CanUse(kPlainOk)) << "accepted all the same";
    });
}

TEST_F(Overlay, TheRubberBandIsWhatThePreviewShows) {
    Run(test::BlankScene(160, 120), [this](FakeWindow& window) {
        window.Pump();
        windows.texts.clear();
        window.Press(100, 50);
        window.Move(30, 200);
        window.Pump();
        EXPECT_EQ(window.Preview().width, 400);
        EXPECT_EQ(window.Preview().height, 300);
        ShownPicture expected = reference::Stretched(Copy(session.m_resultBitmap), {400, 300});
        reference::DrawRectangle(expected, 100, 50, 30, 200, kYellow);
        EXPECT_TRUE(window.Preview() == expected);
    });
}

} // namespace
} // namespace orvane
