// Events that no operator could bring about: before the window stands, after its end, on what is hidden,
// and from positions that no mouse reaches.
#include "image/session_images.h"
#include "tests/session/window_fixture.h"

#include <climits>
#include <functional>
#include <thread>
#include <vector>

namespace orvane {
namespace {

using test::FakeWindow;
using test::kAllActions;

class HostileEvents : public test::WindowTest {
protected:
    /// Every event there is.
    static void TellEverything(WindowEvents& events) {
        events.OnShowWindow();
        for (const int32 id : {1003, 1024, 1005, 0, -1}) events.OnEditChanged(id);
        events.OnToleranceReleased();
        events.OnMouseMove(50, 50);
        events.OnLButtonDown(50, 50);
        events.OnLButtonUp(150, 150);
        events.OnMessage(WindowMessage::previewBitmap);
        events.OnMessage(WindowMessage::animateMark);
        events.OnSysCommand(16);
        for (int32 id = 1000; id < 1050; ++id) events.OnCommand(id);
        events.OnCancel();
    }
};

TEST_F(HostileEvents, BeforeTheWindowStandsNothingHappens) {
    windows.beforeInit = [this](FakeWindow& window) {
        const std::size_t calls = windows.log.size();
        TellEverything(window.events);
        EXPECT_EQ(windows.log.size(), calls);
        EXPECT_EQ(window.Waiting(), 0U);
        ExpectNoMarks();
        EXPECT_FALSE(window.HasEnded());
    };
    EXPECT_EQ(Run([](FakeWindow& window) { window.Click(kPlainOk); }), kSuccess);
}

TEST_F(HostileEvents, AfterTheEndNothingHappens) {
    g_actionEnabled = test::kCropAlone;
    std::vector<uint8> output;
    const auto tell = [&](FakeWindow& window) {
        const std::size_t calls = windows.log.size();
        TellEverything(window.events);
        EXPECT_EQ(windows.log.size(), calls);
        EXPECT_EQ(Output(), output);
    };
    windows.afterward = tell;
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  window.Click(kPlainOk);
                  output = Output();
                  tell(window);
              }),
              kSuccess);
    EXPECT_EQ(Output(), output);
    TellEverything(session); // without any window
    EXPECT_EQ(Output(), output);
    windows.afterward = nullptr;
}

TEST_F(HostileEvents, EveryCommandInTheMarkingStageEndsInAResult) {
    for (const bool face : {false, true}) {
        g_actionEnabled = kAllActions;
        const int32 result =
            Run(face ? test::FaceScene(80, 80, 25, 25, 30) : test::BlankScene(80, 80), [](FakeWindow& window) {
                for (int32 id = -10; id <= 2000 && !window.HasEnded(); ++id) {
                    if (id == kCancelButton || id == kPlainOk || id == kSkinOk) continue;
                    window.events.OnCommand(id);
                    window.events.OnEditChanged(id);
                }
                for (const int32 id : {INT_MIN, INT_MAX, -1000}) window.events.OnCommand(id);
                EXPECT_FALSE(window.HasEnded());
                window.Pump();
                window.events.OnCommand(kPlainOk); // disabled without a face
                window.events.OnCommand(kPlainOk);
                EXPECT_TRUE(window.HasEnded());
            });
        EXPECT_EQ(result, kSuccess);
        EXPECT_FALSE(session.m_resultBitmap.IsEmpty());
    }
}

TEST_F(HostileEvents, EveryCommandInTheAdjustingStageEndsInAResult) {
    g_actionEnabled = kAllActions;
    EXPECT_EQ(Run(test::FaceScene(80, 80, 25, 25, 30),
                  [this](FakeWindow& window) {
                      window.Click(kPlainOk);
                      for (int32 id = -10; id <= 2000; ++id) {
                          if (id == kCancelButton || id == kPlainOk || id == kSkinOk) continue;
                          session.m_stage = 2; // Clear goes back to marking
                          window.events.OnCommand(id);
                          window.events.OnEditChanged(id);
                      }
                      EXPECT_FALSE(window.HasEnded());
                      window.Pump();
                      session.m_stage = 2;
                      window.events.OnCommand(kSkinOk); // hidden
                      EXPECT_TRUE(window.HasEnded());
                  }),
              kSuccess);
    EXPECT_FALSE(session.m_resultBitmap.IsEmpty());
}

TEST_F(HostileEvents, AClearWhileAdjustingGoesBackToMarkingThePortrait) {
    EXPECT_EQ(Adjust(kAllActions,
                     [this](FakeWindow& window) {
                         window.events.OnCommand(kPlainClear); // hidden and disabled
                         EXPECT_EQ(session.m_stage, 1);
                         ExpectNoAnchors();
                         window.Press(20, 20);
                         window.Press(120, 120);
                         window.Click(kPlainOk);
                         window.Click(kPlainOk);
                         EXPECT_TRUE(window.HasEnded());
                     }),
              kSuccess);
}

TEST_F(HostileEvents, MousePositionsMayBeAnyNumbers) {
    const int32 kPlaces[] = {INT_MIN, INT_MIN + 11, -40'000, 10, 12, 200, INT_MAX};
    for (const int32 first : kPlaces) {
        for (const int32 second : kPlaces) {
            const test::Scene scene = test::BlankScene(80, 80);
            Run(scene, [&](FakeWindow& window) {
                WindowEvents& events = window.events;
                events.OnLButtonDown(first, second);
                events.OnMouseMove(second, first);
                events.OnLButtonUp(second, first);
                events.OnMouseMove(INT_MAX, INT_MIN);
                events.OnLButtonDown(second, second);
                window.Pump();
                if (!window.Click(kPlainOk)) window.Click(kCancelButton);
                EXPECT_TRUE(window.HasEnded());
            });
        }
    }
}

TEST_F(HostileEvents, ThinAndTinyPicturesAreServed) {
    for (const ImageSize size : {ImageSize{1, 1}, {1, 20}, {20, 1}, {3, 2}, {40, 2}, {2, 40}, {18, 18}, {76, 75}}) {
        SCOPED_TRACE(::testing::Message() << size.width << " by " << size.height);
        const test::FreshSettings settings;
        g_outputWidth = g_outputHeight = 80; // what stays where the work size is under 75
        g_actionEnabled = kAllActions;
        ::testing::internal::CaptureStdout(); // refused primitives say so
        const int32 result = Run(test::BlankScene(size.width, size.height), [this](FakeWindow& window) {
            window.Pump();
            window.Press(0, 0);
            window.Move(session.m_previewWidth, session.m_previewHeight);
            window.Press(session.m_previewWidth, session.m_previewHeight);
            window.Pump();
            window.events.OnCommand(kPlainOk);
            window.Pump();
            for (const int32 id : {kTurnOn1, kTurnOn90, kTurnBack1, kToleranceUp, kPlainColor}) window.Click(id);
            window.Pump();
            window.events.OnCommand(kPlainOk);
            EXPECT_TRUE(window.HasEnded());
        });
        std::fflush(stdout);
        ::testing::internal::GetCapturedStdout();
        EXPECT_EQ(result, kSuccess);
        ExpectNoMarks();
    }
}

TEST_F(HostileEvents, MessagesFromManyThreadsWhileTheWindowGoes) {
    Run([](FakeWindow& window) {
        std::vector<std::thread> posters;
        for (int32 i = 0; i < 4; ++i) {
            posters.emplace_back([&window] {
                for (int32 n = 0; n < 500; ++n) window.Post(WindowMessage::previewBitmap);
            });
        }
        window.Pump();
        window.CloseBox();
        for (std::thread& poster : posters) poster.join();
        EXPECT_EQ(window.Pump(), 0);
    });
}

TEST_F(HostileEvents, WhatOneSessionPostedTheNextNeverShows) {
    Run([](FakeWindow& window) {
        window.Press(100, 50);
        for (int32 i = 0; i < 5; ++i) window.Move(110 + i, 90);
        window.CloseBox(); // with pictures in line
    });
    Run(test::BlankScene(160, 120), [this](FakeWindow& window) {
        windows.log.clear();
        EXPECT_EQ(window.Pump(), 20) << "the picture of the clearing, and the animation's";
        EXPECT_EQ(windows.Count("preview 400 300"), 10);
        for (int32 i = 0; i < 5; ++i) window.events.OnMessage(WindowMessage::previewBitmap);
        EXPECT_EQ(windows.Count("preview 400 300"), 10) << "nothing more in line";
    });
}

} // namespace
} // namespace orvane
