// The thumbnail of the confirmation: the face crop with a box over its middle and "OK" in it.
#include "session/confirm.h"

#include "image/packed_dib.h"
#include "image/session_images.h"
#include "tests/reference/preview.h"
#include "tests/session/window_fixture.h"

#include <cstring>

namespace orvane {
namespace {

using test::FakeWindow;
using test::ShownPicture;
namespace reference = test::reference;

constexpr ColourRef kGreen = 0x00FF00;

class Confirm : public test::WindowTest {
protected:
    static ShownPicture ThumbnailOf(const ShownPicture& picture, ImageSize limit = {150, 150}) {
        ShownPicture expected =
            reference::Stretched(picture, reference::Fitted({picture.width, picture.height}, limit));
        const auto w = static_cast<double>(expected.width), h = static_cast<double>(expected.height);
        reference::DrawRectangle(expected, std::trunc(w * 0.25), std::trunc(h * 0.25), std::trunc(w * 0.75),
                                 std::trunc(h * 0.75), kGreen);
        return expected;
    }
    static Bitmap Textured(int32 width, int32 height) {
        Bitmap bitmap;
        EXPECT_TRUE(bitmap.Create(width, height));
        test::Scene scene = test::BlankScene(width, height, 128);
        test::Random random(3);
        test::AddTexture(scene, 100, random);
        std::memcpy(bitmap.Bits(), scene.rows.data(), scene.rows.size());
        return bitmap;
    }
};

TEST_F(Confirm, TheThumbnailFitsItsLimitAndHasTheBoxInItsMiddle) {
    for (const ImageSize size : {ImageSize{300, 400}, {400, 300}, {64, 64}, {9, 5}, {1, 1}, {2, 150}, {1000, 20}}) {
        SCOPED_TRACE(::testing::Message() << size.width << " by " << size.height);
        const Bitmap bitmap = Textured(size.width, size.height);
        windows.texts.clear();
        CFaceConfirmDlg dialog;
        const Bitmap thumbnail = MakeConfirmThumbnail(dialog, bitmap, windows);
        const ShownPicture expected = ThumbnailOf(ShownPicture(ViewOf(bitmap)));
        EXPECT_TRUE(ShownPicture(ViewOf(thumbnail)) == expected);
        EXPECT_EQ(dialog.m_thumbWidth, expected.width);
        EXPECT_EQ(dialog.m_thumbHeight, expected.height);
        ASSERT_EQ(windows.texts.size(), 1U);
        const test::WrittenText& text = windows.texts[0];
        EXPECT_EQ(text.text, L"OK");
        EXPECT_EQ(text.colour, kGreen);
        const int32 w = expected.width, h = expected.height;
        EXPECT_EQ(text.fontHeight, static_cast<int32>(h * 0.3));
        EXPECT_EQ(text.fontWidth, static_cast<int32>(w * 0.15));
        EXPECT_EQ(text.x, static_cast<int32>(w * 0.25) + 2);
        EXPECT_EQ(text.y, static_cast<int32>(static_cast<int32>(h * 0.25) + h * 0.1));
    }
}

TEST_F(Confirm, TheLimitIsTheDialogs) {
    CFaceConfirmDlg dialog;
    EXPECT_EQ(dialog.m_maxWidth, 150);
    EXPECT_EQ(dialog.m_maxHeight, 150);
    dialog.m_maxWidth = 60;
    dialog.m_maxHeight = 20;
    const Bitmap bitmap = Textured(90, 60);
    EXPECT_TRUE(ShownPicture(ViewOf(MakeConfirmThumbnail(dialog, bitmap, windows))) ==
                ThumbnailOf(ShownPicture(ViewOf(bitmap)), {60, 20}));
    EXPECT_EQ(dialog.m_thumbWidth, 30);
}

TEST_F(Confirm, NothingIsMadeOfAPictureThatVanishes) {
    CFaceConfirmDlg dialog;
    EXPECT_TRUE(MakeConfirmThumbnail(dialog, Bitmap(), windows).IsEmpty());
    EXPECT_TRUE(MakeConfirmThumbnail(dialog, Textured(1000, 2), windows).IsEmpty()) << "300 times as wide as high";
    EXPECT_TRUE(windows.texts.empty());
}

TEST_F(Confirm, ItShowsTheFaceCropWhateverTheActionsAre) {
    for (const ActionFlags& actions : {test::kAllActions, ActionFlags{0, 0, 1, 0, 0, 0}, {0, 0, 0, 0, 0, 0}}) {
        windows.confirmations.clear();
        g_actionEnabled = actions;
        ShownPicture crop;
        windows.duringConfirm = [&] { crop = ShownPicture(ViewOf(session.m_resultBitmap)); };
        Run([](FakeWindow& window) { window.Click(kPlainOk); });
        ASSERT_EQ(windows.confirmations.size(), 1U);
        EXPECT_LT(crop.width, 640) << "the crop of the work picture";
        EXPECT_TRUE(windows.confirmations[0] == ThumbnailOf(crop));
    }
    windows.duringConfirm = nullptr;
}

TEST_F(Confirm, AHiddenSessionConfirmsOnceAndAVisibleOneOncePerOk) {
    session.m_visible = false;
    g_actionEnabled = test::kAllActions;
    EXPECT_EQ(Run([](FakeWindow&) {}), kSuccess);
    EXPECT_EQ(windows.confirmations.size(), 1U);
    session.m_visible = true;
    EXPECT_EQ(Run([](FakeWindow& window) {
                  window.Click(kPlainOk);
                  window.Click(kTurnOn90);
                  window.DragSlider(70);
                  window.Click(kPlainColor);
                  window.Click(kPlainOk);
              }),
              kSuccess);
    EXPECT_EQ(windows.confirmations.size(), 2U);
}

TEST_F(Confirm, TheHostMayDoWithItsBlockWhatItLikesMeanwhile) {
    session.m_visible = false;
    const test::Scene scene = test::SmallFaceScene();
    for (const ActionFlags& actions : {test::kCropAlone, ActionFlags{0, 0, 0, 0, 0, 0}}) {
        g_actionEnabled = actions;
        ASSERT_EQ(Run([](FakeWindow&) {}), kSuccess);
        const std::vector<uint8> good = Output();
        const test::HostBlock block(scene);
        windows.duringConfirm = [&] {
            std::memset(orv_BlockLock(block.Handle()), 0xEE, orv_BlockSize(block.Handle()));
            orv_BlockUnlock(block.Handle());
        };
        g_actionEnabled = actions;
        EXPECT_EQ(session.DetectFacePicture(block.Handle()), kSuccess);
        EXPECT_EQ(Output(), good);
        windows.duringConfirm = nullptr;
    }
}

TEST_F(Confirm, ACancelledSessionConfirmsNothing) {
    Run([](FakeWindow& window) { window.Click(kCancelButton); });
    EXPECT_TRUE(windows.confirmations.empty());
}

TEST_F(Confirm, AWindowClosedDuringItStaysClosed) {
    for (const ActionFlags& actions : {test::kAllActions, test::kCropAlone}) {
        g_actionEnabled = actions;
        windows.duringConfirm = [this] { windows.open->CloseBox(); };
        EXPECT_EQ(Run([](FakeWindow& window) {
                      window.Click(kPlainOk);
                      EXPECT_TRUE(window.HasEnded());
                  }),
                  kCancelled);
        EXPECT_TRUE(session.m_resultBitmap.IsEmpty()) << "no output is made after the cancel";
        EXPECT_EQ(g_actionEnabled, actions);
    }
    windows.duringConfirm = nullptr;
}

TEST_F(Confirm, ASecondOkDuringItEndsTheSessionOnce) {
    g_actionEnabled = test::kAllActions;
    bool again = true;
    windows.duringConfirm = [&] {
        if (std::exchange(again, false)) windows.open->events.OnCommand(kPlainOk);
    };
    EXPECT_EQ(Run([](FakeWindow& window) { window.Click(kPlainOk); }), kSuccess);
    windows.duringConfirm = nullptr;
    EXPECT_EQ(windows.Count("end"), 1);
    EXPECT_GE(session.m_resultBitmap.Height(), 160) << "the final output, not a preview's picture over it";
}

} // namespace
} // namespace orvane
