// The rotation controls: how angles wrap, and the preview that is turned without another run.
#include "image/packed_dib.h"
#include "image/session_images.h"
#include "tests/reference/rotation.h"
#include "tests/session/window_fixture.h"
#include "tests/support/pictures.h"

#include <string>

namespace orvane {
namespace {

using test::FakeWindow;

class RotationControl : public test::WindowTest {
protected:
    int32 Adjust(const Script& script) { return WindowTest::Adjust({1, 0, 1, 1, 0, 0}, script); }

    void ExpectAngle(const FakeWindow& window, int32 angle) const {
        EXPECT_EQ(session.m_rotation, angle);
        EXPECT_EQ(window.Text(kRotationEdit), std::to_wstring(angle));
    }
};

TEST_F(RotationControl, TheButtonsWrapTheAngleOnce) {
    struct Case {
        int32 before, button, after;
    };
    const Case kCases[] = {
        {0, kTurnOn1, 1},     {0, kTurnBack1, 359},   {0, kTurnBack90, 270}, {0, kTurnOn90, 90},
        {359, kTurnOn1, 0},   {300, kTurnOn90, 30},   {270, kTurnOn90, 0},   {269, kTurnOn90, 359},
        {90, kTurnBack90, 0}, {89, kTurnBack90, 359}, {1, kTurnBack1, 0},    {180, kTurnBack1, 179},
        {359, kTurnOn90, 89}, {180, kTurnOn90, 270},  {358, kTurnOn1, 359},  {45, kTurnBack90, 315},
    };
    Adjust([&](FakeWindow& window) {
        for (const Case& c : kCases) {
            SCOPED_TRACE(::testing::Message() << c.before << " by " << c.button);
            window.Type(kRotationEdit, std::to_wstring(c.before).c_str());
            EXPECT_TRUE(window.Click(c.button));
            ExpectAngle(window, c.after);
        }
    });
}

TEST_F(RotationControl, TheEditLimitsWhereTheButtonsWrap) {
    struct Case {
        const wchar_t* typed;
        int32 angle;
        const wchar_t* shown;
    };
    const Case kCases[] = {
        {L"45", 45, L"45"},
        {L"358", 358, L"358"},
        {L"359", 359, L"359"},
        {L"360", 359, L"359"},
        {L"400", 359, L"359"},
        {L"-5", 0, L"0"},
        {L"", 0, L""},
        {L"x", 0, L"x"},
        {L"123456789", 359, L"359"},
        {L"0012", 12, L"0012"},
        {L"0000000012", 1, L"0000000012"}, // nine are read
        {L"99999999999999", 359, L"359"},
    };
    Adjust([&](FakeWindow& window) {
        for (const Case& c : kCases) {
            SCOPED_TRACE(::testing::PrintToString(std::wstring(c.typed)));
            EXPECT_TRUE(window.Type(kRotationEdit, c.typed));
            EXPECT_EQ(session.m_rotation, c.angle);
            EXPECT_EQ(window.Text(kRotationEdit), c.shown);
        }
    });
}

TEST_F(RotationControl, TheEditIsReadWithNineCharacters) {
    Adjust([this](FakeWindow& window) {
        windows.log.clear();
        window.Click(kTurnOn1);
        EXPECT_EQ(windows.Count("read 1024 10"), 1) << "nine and the zero";
        EXPECT_EQ(windows.Count("text 1024 1"), 1);
        EXPECT_EQ(windows.Count("update 1024"), 1);
    });
}

TEST_F(RotationControl, ThePreviewShowsTheSnapshotTurnedAndTheResultStays) {
    Adjust([this](FakeWindow& window) {
        for (const int32 angle : {90, 7, 180, 359, 270, 0, 201}) {
            SCOPED_TRACE(angle);
            const std::vector<uint8> result = Output();
            ImageBuffer expected, expectedMask;
            test::reference::TurnPicture(g_colourStageImage, expected, angle);
            window.Type(kRotationEdit, std::to_wstring(angle).c_str());
            EXPECT_EQ(Output(), result) << "only the preview turns";
            EXPECT_SAME_PICTURE(g_workImage, expected);
            EXPECT_EQ(g_rotationAngle, angle);
            EXPECT_EQ(session.m_bitmapHeader.biWidth, expected.width);
            EXPECT_EQ(session.m_bitmapHeader.biHeight, expected.height);
            EXPECT_EQ(window.Pump(), 1);
            Bitmap turned;
            ASSERT_EQ(StoreWorkIntoBitmap(turned), kSuccess);
            const Bitmap scaled = session.ScaleBitmapToPreview(turned);
            EXPECT_TRUE(window.Preview() == test::ShownPicture(ViewOf(scaled)));
        }
    });
}

TEST_F(RotationControl, TheMaskTurnsAlong) {
    WindowTest::Adjust({1, 1, 0, 1, 0, 0}, [](FakeWindow& window) {
        ASSERT_NE(g_colourStageMask.data, nullptr);
        ImageBuffer expected;
        test::reference::TurnPicture(g_colourStageMask, expected, 33);
        window.Type(kRotationEdit, L"33");
        EXPECT_SAME_PICTURE(g_maskImage, expected);
    });
}

TEST_F(RotationControl, TurnsDoNotAddUpInThePixels) {
    Adjust([](FakeWindow& window) {
        window.Type(kRotationEdit, L"30");
        ImageBuffer direct;
        direct.CopyFrom(g_workImage);
        for (int32 i = 0; i < 3; ++i) window.Click(kTurnOn1);
        for (int32 i = 0; i < 3; ++i) window.Click(kTurnBack1);
        EXPECT_SAME_PICTURE(g_workImage, direct);
    });
}

TEST_F(RotationControl, TheSameAngleAgainIsShownAgain) {
    Adjust([](FakeWindow& window) {
        window.Click(kTurnOn1);
        window.Pump();
        window.Type(kRotationEdit, L"1");
        EXPECT_EQ(window.Pump(), 1);
    });
}

TEST_F(RotationControl, TheFinalRunTurnsByTheAngle) {
    const auto sessionWith = [this](int32 angle) {
        EXPECT_EQ(Adjust([angle](FakeWindow& window) {
                      window.Type(kRotationEdit, std::to_wstring(angle).c_str());
                      window.Click(kPlainOk);
                  }),
                  kSuccess);
        return Output();
    };
    const std::vector<uint8> upright = sessionWith(0);
    EXPECT_NE(sessionWith(90), upright);
    EXPECT_EQ(g_rotationAngle, 90);
    EXPECT_EQ(sessionWith(0), upright);
}

TEST_F(RotationControl, ARunForAnotherReasonTurnsByTheAngleToo) {
    Adjust([this](FakeWindow& window) {
        const ImageSize upright = session.m_resultBitmap.Size();
        window.Click(kTurnOn90);
        window.Click(kPlainColor);
        EXPECT_EQ(session.m_resultBitmap.Width(), upright.height);
        EXPECT_EQ(session.m_resultBitmap.Height(), upright.width);
    });
}

TEST_F(RotationControl, WhileMarkingOnlyTheNumberChanges) {
    Run([this](FakeWindow& window) {
        window.Pump();
        windows.log.clear();
        const std::vector<uint8> before = Output();
        window.events.OnCommand(kTurnOn90); // the button is hidden
        ExpectAngle(window, 90);
        EXPECT_EQ(window.Waiting(), 0U);
        EXPECT_EQ(Output(), before);
        EXPECT_EQ(session.m_bitmapHeader.biWidth, 640);
        EXPECT_EQ(windows.Count("cursor wait"), 0);
    });
}

TEST_F(RotationControl, ANewSessionStandsUpright) {
    Adjust([](FakeWindow& window) { window.Click(kTurnOn90); });
    Run([this](FakeWindow& window) { ExpectAngle(window, 0); });
}

} // namespace
} // namespace orvane
