// The adjusting stage: which controls it shows, what its buttons do, and what its preview holds.
#include "image/packed_dib.h"
#include "image/session_images.h"
#include "tests/session/window_fixture.h"

namespace orvane {
namespace {

using test::FakeWindow;
using test::kAllActions;

class Adjusting : public test::WindowTest {
protected:
    /// The preview must show this bitmap, scaled.
    void ExpectPreview(const FakeWindow& window, const Bitmap& bitmap) const {
        const Bitmap scaled = session.ScaleBitmapToPreview(bitmap);
        ASSERT_FALSE(scaled.IsEmpty());
        EXPECT_TRUE(window.Preview() == test::ShownPicture(ViewOf(scaled)));
    }
};

TEST_F(Adjusting, OnlyTheControlsOfEnabledActionsShow) {
    for (uint8 choice = 1; choice < 8; ++choice) {
        const uint8 background = choice & 1, colour = choice >> 1 & 1, rotation = choice >> 2 & 1;
        Adjust({1, background, colour, rotation, 0, 0}, [=](FakeWindow& window) {
            SCOPED_TRACE(+choice);
            for (const int32 id : test::kToleranceControls) EXPECT_EQ(window.IsShown(id), background != 0) << id;
            for (const int32 id : test::kRotationControls) EXPECT_EQ(window.IsShown(id), rotation != 0) << id;
            EXPECT_EQ(window.IsShown(kPlainColor), colour != 0);
            for (const int32 id : {kPreview, kPlainOk, kCancelButton, kAboutButton}) EXPECT_TRUE(window.CanUse(id));
            for (const int32 id :
                 {kPrompt, kPlainClear, kPlainFreeze, kWatermarkCheck, kSkinOk, kSkinClear, kSkinColor}) {
                EXPECT_FALSE(window.IsShown(id)) << id;
            }
            EXPECT_FALSE(window.IsEnabled(kPlainClear));
        });
    }
}

TEST_F(Adjusting, AFlagOfAnyValueButZeroCounts) {
    Adjust({1, 255, 2, 128, 0, 0}, [](FakeWindow& window) {
        for (const int32 id : {kToleranceSlider, kPlainColor, kTurnOn90}) EXPECT_TRUE(window.CanUse(id)) << id;
    });
}

TEST_F(Adjusting, OkTellsByTheCursorThatItWorksAndHidesWhatMarkedTheFace) {
    g_actionEnabled = kAllActions;
    Run([this](FakeWindow& window) {
        window.Click(kPlainClear);
        window.Press(100, 100);
        window.Press(250, 250);
        windows.log.clear();
        window.Click(kPlainOk);
        const std::vector<std::string> begin(windows.log.begin(), windows.log.begin() + 4);
        EXPECT_EQ(begin, (std::vector<std::string>{"cursor wait", "hide -1", "hide 1016", "hide 1025"}));
    });
}

TEST_F(Adjusting, TheConfirmationComesBeforeTheRunAndTheOldPictureIsPaintedAgain) {
    g_actionEnabled = kAllActions;
    Run([this](FakeWindow& window) {
        window.Pump();
        const test::ShownPicture marked = window.Preview();
        windows.log.clear();
        windows.duringConfirm = [&] {
            EXPECT_EQ(session.m_stage, 2);
            EXPECT_EQ(g_actionEnabled, kAllActions) << "the flags are whole again";
        };
        window.Click(kPlainOk);
        windows.duringConfirm = nullptr;
        EXPECT_EQ(windows.confirmations.size(), 1U);
        std::vector<std::string> painting;
        for (const std::string& line : windows.log) {
            if (line == "confirm" || line == "repaint" || line.rfind("preview", 0) == 0) painting.push_back(line);
        }
        EXPECT_EQ(painting, (std::vector<std::string>{"confirm", "repaint"}));
        EXPECT_TRUE(window.Preview() == marked) << "until the portrait's message comes";
        EXPECT_EQ(window.Pump(), 1);
        ExpectPreview(window, session.m_resultBitmap);
    });
    EXPECT_EQ(windows.confirmations.size(), 1U) << "the later runs confirm nothing";
}

TEST_F(Adjusting, ThePortraitIsNotScaledToTheOutputSizeYet) {
    Adjust(kAllActions, [this](FakeWindow&) {
        EXPECT_EQ(g_actionEnabled[kSlotOutputScaling], 0);
        EXPECT_NE(session.m_resultBitmap.Height(), 160);
        EXPECT_EQ(session.m_bitmapHeader.biWidth, session.m_resultBitmap.Width());
        EXPECT_EQ(session.m_previewHeight, 400) << "the preview has the portrait's shape";
        EXPECT_LT(session.m_previewWidth, 400);
    });
}

TEST_F(Adjusting, ColourCorrectionSwitchesTheActionAndRunsAgain) {
    Adjust({1, 0, 1, 0, 0, 0}, [this](FakeWindow& window) {
        const std::vector<uint8> with = Output();
        EXPECT_TRUE(window.Click(kPlainColor));
        EXPECT_EQ(g_actionEnabled[kSlotColour], 0);
        EXPECT_EQ(window.Pump(), 1);
        const std::vector<uint8> without = Output();
        EXPECT_NE(without, with);
        ExpectPreview(window, session.m_resultBitmap);
        EXPECT_TRUE(window.CanUse(kPlainColor)) << "to switch it on again";
        EXPECT_TRUE(window.Click(kPlainColor));
        EXPECT_EQ(g_actionEnabled[kSlotColour], 1);
        EXPECT_EQ(window.Pump(), 1);
        EXPECT_EQ(Output(), with);
    });
}

TEST_F(Adjusting, AnActionSwitchedOffStaysOffInTheOutput) {
    EXPECT_EQ(Adjust({1, 0, 1, 0, 0, 0},
                     [](FakeWindow& window) {
                         window.Click(kPlainColor);
                         window.Click(kPlainOk);
                     }),
              kSuccess);
    EXPECT_EQ(g_actionEnabled, (ActionFlags{1, 0, 0, 0, 0, 1}));
    const std::vector<uint8> switchedOff = Output();
    session.m_visible = false;
    g_actionEnabled = test::kCropAlone;
    ASSERT_EQ(Run([](FakeWindow&) {}), kSuccess);
    EXPECT_EQ(Output(), switchedOff);
}

TEST_F(Adjusting, TheOkThatFollowsIsTheLastEvenWithEverythingSwitchedOff) {
    EXPECT_EQ(Adjust({1, 0, 1, 0, 0, 0},
                     [](FakeWindow& window) {
                         window.Click(kPlainColor);
                         window.Click(kPlainOk);
                         EXPECT_TRUE(window.HasEnded());
                     }),
              kSuccess);
}

TEST_F(Adjusting, TheAboutBoxComesByItsButtonAndByTheSystemMenu) {
    Run([this](FakeWindow& window) {
        EXPECT_TRUE(window.Click(kAboutButton));
        EXPECT_EQ(windows.Count("about"), 1);
        for (const int32 id : {16, 17, 31}) EXPECT_TRUE(window.events.OnSysCommand(id)) << id;
        EXPECT_EQ(windows.Count("about"), 4);
        for (const int32 id : {0, 15, 32, 0xF060, 0xF020, -1, -16}) EXPECT_FALSE(window.events.OnSysCommand(id)) << id;
        EXPECT_EQ(windows.Count("about"), 4);
    });
}

TEST_F(Adjusting, WatermarkAndFreezeDoNothing) {
    Adjust(kAllActions, [this](FakeWindow& window) {
        const std::size_t calls = windows.log.size();
        const std::vector<uint8> before = Output();
        window.events.OnCommand(kWatermarkCheck);
        window.events.OnCommand(kPlainFreeze);
        EXPECT_EQ(windows.log.size(), calls);
        EXPECT_EQ(Output(), before);
    });
}

TEST_F(Adjusting, NoMarkingAnyMore) {
    Adjust(kAllActions, [this](FakeWindow& window) {
        const int32 left = session.m_anchorLeft;
        const std::vector<uint8> portrait = Output();
        window.Press(50, 50);
        window.Move(150, 150);
        window.Release(150, 150);
        EXPECT_EQ(session.m_anchorLeft, left);
        EXPECT_EQ(window.Pump(), 0);
        EXPECT_EQ(Output(), portrait);
    });
}

TEST_F(Adjusting, ARectangleThatWasOnlyBegunIsForgottenWithTheOk) {
    g_actionEnabled = kAllActions;
    Run([this](FakeWindow& window) {
        window.Pump();
        window.Press(50, 50); // the old rectangle goes, OK stays enabled
        EXPECT_TRUE(window.Click(kPlainOk));
        window.Pump();
        const ImageSize picture = g_sourceImage.Size();
        const test::ShownPicture portrait = window.Preview();
        window.Move(150, 150);
        window.Release(150, 150);
        EXPECT_EQ(window.Pump(), 0) << "no rubber band over the portrait";
        EXPECT_TRUE(window.Preview() == portrait);
        EXPECT_EQ(g_sourceImage.width, picture.width) << "the portrait does not become the picture";
        EXPECT_EQ(session.m_anchorRight, -1);
    });
}

} // namespace
} // namespace orvane
