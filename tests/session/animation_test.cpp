// The opening animation: nine frames lead the rectangle from the picture's corner onto the face.
#include "tests/reference/preview.h"
#include "tests/session/window_fixture.h"

#include <cmath>

namespace orvane {
namespace {

using test::FakeWindow;
using test::ShownPicture;
namespace reference = test::reference;

class Animation : public test::WindowTest {
protected:
    ShownPicture Scaled() const { return ShownPicture(ViewOf(session.ScaleBitmapToPreview(session.m_resultBitmap))); }
};

TEST_F(Animation, NineFramesWithPausesBetween) {
    Run([this](FakeWindow& window) {
        windows.log.clear();
        EXPECT_EQ(window.Pump(), 19) << "ten steps, nine pictures";
        EXPECT_EQ(windows.Count("rest 50"), 9) << "none before the first";
        EXPECT_EQ(windows.Count("preview 400 300"), 9);
        EXPECT_EQ(session.m_animationStep, 0);
        EXPECT_EQ(windows.log.front(), "preview 400 300");
        EXPECT_EQ(windows.log.back(), "rest 50");
    });
}

TEST_F(Animation, EachFrameIsItsShareOfTheWay) {
    Run([this](FakeWindow& window) {
        const int32 left = session.m_markLeft, top = session.m_markTop, right = session.m_markRight,
                    bottom = session.m_markBottom;
        for (int32 step = 1; step <= 9; ++step) {
            SCOPED_TRACE(step);
            ASSERT_TRUE(window.PumpOne());
            EXPECT_EQ(session.m_markLeft, left) << "the marks come out as they went in";
            EXPECT_EQ(session.m_markTop, top);
            EXPECT_EQ(session.m_markRight, right);
            EXPECT_EQ(session.m_markBottom, bottom);
            ASSERT_TRUE(window.PumpOne());
            const auto side = [step](float start, int32 target) {
                const float s = static_cast<float>(step) * (static_cast<float>(target) - start) * 0.11111111F;
                return std::trunc(start + s);
            };
            ShownPicture expected = Scaled();
            reference::DrawRectangle(expected, side(1, left), side(5, bottom), side(5, right), side(1, top), 0x00FFFF);
            EXPECT_TRUE(window.Preview() == expected);
        }
        ShownPicture onTheFace = Scaled();
        reference::DrawRectangle(onTheFace, left, top, right, bottom, 0x00FFFF);
        EXPECT_TRUE(window.Preview() == onTheFace) << "the last frame is at the target";
        EXPECT_EQ(window.Pump(), 1);
        EXPECT_TRUE(window.Preview() == onTheFace);
    });
}

TEST_F(Animation, TheLastFrameIsAtTheTargetWhateverThatIs) {
    for (int32 target = 0; target <= 450; ++target) {
        for (const float start : {1.0F, 5.0F}) {
            const float end = start + 9.0F * (static_cast<float>(target) - start) * 0.11111111F;
            ASSERT_EQ(static_cast<int32>(end), target) << "from " << start;
        }
    }
}

TEST_F(Animation, WithoutAFaceTheQuestionMarkIsDrawnNineTimes) {
    Run(test::BlankScene(160, 120), [this](FakeWindow& window) {
        windows.texts.clear(); // the clearing drew one
        window.Pump();
        EXPECT_EQ(windows.texts.size(), 9U);
        for (const test::WrittenText& text : windows.texts) EXPECT_EQ(text.text, L"?");
        EXPECT_TRUE(window.Preview() == Scaled());
    });
}

TEST_F(Animation, AnOkInItsMidstEndsIt) {
    g_actionEnabled = test::kAllActions;
    Run([this](FakeWindow& window) {
        for (int32 i = 0; i < 6; ++i) window.PumpOne();
        EXPECT_GT(session.m_animationStep, 0);
        window.Click(kPlainOk);
        windows.log.clear();
        window.Pump();
        EXPECT_EQ(windows.Count("rest 50"), 0);
        EXPECT_EQ(session.m_animationStep, 0);
        EXPECT_TRUE(window.Preview() == Scaled()) << "the portrait, without a rectangle";
    });
}

TEST_F(Animation, AWindowClosedInItsMidstLeavesTheNextOneItsOwn) {
    Run([](FakeWindow& window) {
        for (int32 i = 0; i < 9; ++i) window.PumpOne();
        window.CloseBox();
    });
    Run([this](FakeWindow& window) {
        windows.log.clear();
        EXPECT_EQ(window.Pump(), 19);
        EXPECT_EQ(windows.Count("preview 400 300"), 9);
        EXPECT_EQ(windows.log.front(), "preview 400 300") << "without a pause first";
    });
}

TEST_F(Animation, AMarkingInItsMidstGoesOnBesideIt) {
    Run(test::BlankScene(160, 120), [this](FakeWindow& window) {
        for (int32 i = 0; i < 5; ++i) window.PumpOne();
        window.Press(100, 50);
        window.Move(150, 100);
        window.Pump();
        EXPECT_EQ(session.m_anchorLeft, 100);
        EXPECT_EQ(session.m_markRight, 150) << "the marks come out of it as they went in";
        window.Release(200, 150);
        EXPECT_EQ(session.m_markLeft, 100);
        EXPECT_EQ(session.m_markBottom, 150);
        EXPECT_TRUE(window.CanUse(kPlainOk));
    });
}

TEST_F(Animation, ComingBackToTheScreenStartsItAgain) {
    Run([this](FakeWindow& window) {
        window.Pump();
        windows.log.clear();
        window.events.OnShowWindow();
        EXPECT_EQ(window.Pump(), 19);
        EXPECT_EQ(windows.Count("preview 400 300"), 9);
    });
}

TEST_F(Animation, ForgedAndLostMessagesDoNoHarm) {
    Run([this](FakeWindow& window) {
        for (int32 i = 0; i < 25; ++i) window.events.OnMessage(WindowMessage::previewBitmap);
        for (int32 i = 0; i < 3; ++i) window.events.OnMessage(WindowMessage::animateMark);
        window.events.OnMessage(static_cast<WindowMessage>(4711));
        window.Pump(); // comes to an end
        EXPECT_EQ(window.Waiting(), 0U);
        EXPECT_EQ(session.m_animationStep, 0);
    });
}

} // namespace
} // namespace orvane
