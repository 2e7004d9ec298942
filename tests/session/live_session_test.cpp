// Whole live sessions with their threads: the video, Freeze, and every way to end one.
#include "tests/session/live_fixture.h"

#include <atomic>
#include <fstream>

namespace orvane {
namespace {

using test::DuringDetection;
using test::FakeWindow;
using test::FrameWithFace;
using test::FrameWithoutFace;
using test::Scene;

/// Delivers one frame again and again on a thread of its own, as a camera does.
class Camera {
public:
    Camera(test::FakeVideo& video, Scene frame) : video_(video), frame_(std::move(frame)) {}
    ~Camera() {
        ended_ = true;
        thread_.join();
    }
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

private:
    void Deliver() {
        while (!ended_) {
            video_.Deliver(frame_);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    test::FakeVideo& video_;
    const Scene frame_;
    std::atomic<bool> ended_ = false;
    std::thread thread_{[this] { Deliver(); }};
};

class LiveSession : public test::LiveTest {
protected:
    /// Serves the window until something comes about.
    static bool ServeUntil(FakeWindow& window, const std::function<bool()>& what) {
        return Comes([&] {
            window.Pump();
            return what();
        });
    }
    Corners LockedMarks() {
        const std::lock_guard lock(session.m_stateMutex);
        return Marks();
    }
    bool HasFace() { return LockedMarks().right > 0; }
    static bool ShowsYellow(const FakeWindow& window) { return window.Preview().Shows(0x00FFFF); }
};

TEST_F(LiveSession, TheVideoRunsWithTheRectangleOnTheFace) {
    const Camera camera(video, FrameWithFace());
    Run([&](FakeWindow& window) {
        EXPECT_TRUE(ServeUntil(window, [&] { return ShowsYellow(window); })) << "no rectangle came";
        EXPECT_EQ(window.Preview().width, 400);
        EXPECT_EQ(window.Preview().height, 300);
        window.CloseBox();
    });
}

TEST_F(LiveSession, TheOpeningAnimationShowsNoPicture) {
    Run([&](FakeWindow& window) { // no frame comes; the first grab is after 350 milliseconds
        while (window.PumpOne()) EXPECT_EQ(window.Preview().width, 0);
        EXPECT_GT(windows.Count("rest 50"), 0);
        window.CloseBox();
    });
}

TEST_F(LiveSession, OkTakesTheNewestFrameWithItsRectangle) {
    const Camera camera(video, FrameWithFace());
    const int32 result = Run([&](FakeWindow& window) {
        ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
        EXPECT_TRUE(window.Click(kPlainOk));
        EXPECT_TRUE(window.HasEnded()) << "with the crop alone the first OK is the last";
    });
    EXPECT_EQ(result, kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 120);
    EXPECT_GE(session.m_resultBitmap.Height(), 160);
    EXPECT_EQ(session.m_capture, nullptr);
    EXPECT_TRUE(session.m_sourceBitmap.IsEmpty());
    ExpectNoMarks();
    ASSERT_EQ(windows.confirmations.size(), 1U);
    EXPECT_LT(windows.confirmations[0].width, windows.confirmations[0].height)
        << "the crop that was accepted, upright as the output is, not the whole frame";
}

TEST_F(LiveSession, WithoutTheCropTheOutputHasTheFramesSize) {
    g_actionEnabled = {0, 0, 0, 0, 0, 0};
    const Camera camera(video, FrameWithFace());
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  ASSERT_TRUE(ServeUntil(window, [&] { return window.Preview().width > 0; }));
                  window.Click(kPlainOk);
              }),
              kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 160);
    EXPECT_EQ(session.m_resultBitmap.Height(), 120);
}

TEST_F(LiveSession, TheAdjustingStageGoesOnFromTheLastFrame) {
    g_actionEnabled = {1, 0, 1, 1, 0, 0};
    const Camera camera(video, FrameWithFace());
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
                  EXPECT_TRUE(window.Click(kPlainOk));
                  EXPECT_FALSE(window.HasEnded());
                  EXPECT_EQ(session.m_stage, 2);
                  EXPECT_EQ(session.m_capture, nullptr) << "the camera is given back";
                  EXPECT_FALSE(window.IsShown(kPlainFreeze));
                  EXPECT_TRUE(window.IsShown(kTurnOn1));
                  EXPECT_TRUE(window.IsShown(kPlainColor));
                  window.Pump();
                  EXPECT_FALSE(ShowsYellow(window)) << "the portrait";
                  EXPECT_TRUE(window.Click(kTurnOn90));
                  EXPECT_TRUE(window.Click(kPlainOk));
                  EXPECT_TRUE(window.HasEnded());
              }),
              kSuccess);
    EXPECT_FALSE(session.m_resultBitmap.IsEmpty());
    EXPECT_EQ(session.m_stage, 1);
}

TEST_F(LiveSession, CancelInTheAdjustingStageKeepsThePortrait) {
    g_actionEnabled = {1, 0, 0, 1, 0, 0};
    const Camera camera(video, FrameWithFace());
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
                  window.Click(kPlainOk);
                  window.Click(kCancelButton);
              }),
              kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 120);
}

TEST_F(LiveSession, CancelEndsItWithoutAnOutput) {
    const Camera camera(video, FrameWithFace());
    for (const bool closeBox : {false, true}) {
        EXPECT_EQ(Run([&](FakeWindow& window) {
                      ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
                      closeBox ? window.CloseBox() : static_cast<void>(window.Click(kCancelButton));
                      EXPECT_NE(session.m_capture, nullptr) << "the threads run on until the window is gone";
                  }),
                  kCancelled);
        EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
        EXPECT_EQ(session.m_capture, nullptr);
        EXPECT_EQ(session.m_stage, 1);
        ExpectNoMarks();
    }
}

TEST_F(LiveSession, FreezeHoldsThePictureAndUnfreezeLetsGo) {
    const Camera camera(video, FrameWithFace());
    Run([&](FakeWindow& window) {
        ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
        EXPECT_TRUE(window.Click(kPlainFreeze));
        EXPECT_EQ(window.Text(kPlainFreeze), L"Unfreeze");
        EXPECT_EQ(session.m_capture->m_playState, kPaused);
        EXPECT_EQ(video.log.back(), "pause");
        std::this_thread::sleep_for(std::chrono::milliseconds(60)); // a step that was under way
        window.Pump();
        const int32 before = windows.Count("preview 400 300");
        std::this_thread::sleep_for(std::chrono::milliseconds(120));
        window.Pump();
        EXPECT_EQ(windows.Count("preview 400 300"), before) << "the last picture stays";
        EXPECT_TRUE(HasFace()) << "with its rectangle";
        EXPECT_TRUE(window.Click(kPlainFreeze));
        EXPECT_EQ(window.Text(kPlainFreeze), L"Freeze");
        EXPECT_EQ(session.m_capture->m_playState, kRunning);
        EXPECT_TRUE(ServeUntil(window, [&] { return windows.Count("preview 400 300") > before; })) << "it runs on";
        window.CloseBox();
    });
}

TEST_F(LiveSession, FreezeSpeaksTheTableOfTexts) {
    std::ofstream(files.Path() / "texts.txt") << "1 Halten\n2 Weiter\n";
    ASSERT_EQ(session.m_language.SetLanguageFile("texts.txt"), kSuccess);
    Run([&](FakeWindow& window) {
        EXPECT_EQ(window.Text(kPlainFreeze), L"Halten");
        window.Click(kPlainFreeze);
        EXPECT_EQ(window.Text(kPlainFreeze), L"Weiter");
        window.Click(kPlainFreeze);
        EXPECT_EQ(window.Text(kPlainFreeze), L"Halten");
        window.CloseBox();
    });
}

TEST_F(LiveSession, FreezeIsNothingForAPicture) {
    session.m_visible = true;
    windows.script = [this](FakeWindow& window) {
        session.OnBnClickedFreeze();
        EXPECT_EQ(window.Text(kPlainFreeze), L"Freeze");
        window.CloseBox();
    };
    EXPECT_EQ(session.DetectFacePicture(test::HostBlock(FrameWithFace()).Handle()), kCancelled);
}

TEST_F(LiveSession, OkTakesTheFrozenPicture) {
    const Camera camera(video, FrameWithFace());
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
                  window.Click(kPlainFreeze);
                  EXPECT_TRUE(window.Click(kPlainOk));
              }),
              kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 120);
    EXPECT_EQ(video.log.back(), "close");
}

TEST_F(LiveSession, CancelWhileFrozenEndsBothThreads) {
    const Camera camera(video, FrameWithFace());
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
                  window.Click(kPlainFreeze);
                  window.CloseBox();
              }),
              kCancelled);
    EXPECT_TRUE(session.m_frameThreadStopped);
    EXPECT_TRUE(session.m_detectThreadStopped);
    EXPECT_EQ(video.log.back(), "close") << "given back in its paused state";
}

TEST_F(LiveSession, OkDuringADetectionWaitsForItsEnd) {
    std::atomic<bool> detecting = false;
    DuringDetection slow([&] {
        detecting = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        detecting = false;
    });
    const Camera camera(video, FrameWithFace());
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  ASSERT_TRUE(ServeUntil(window, [&] { return HasFace() && detecting; }));
                  EXPECT_TRUE(window.Click(kPlainOk));
                  EXPECT_FALSE(detecting) << "the pipeline must not begin beside a detection";
              }),
              kSuccess);
}

TEST_F(LiveSession, WithoutAFaceOkGivesTheWholeFrame) {
    const Camera camera(video, FrameWithoutFace());
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  ASSERT_TRUE(ServeUntil(window, [&] { return window.Preview().width > 0; }));
                  EXPECT_FALSE(ShowsYellow(window));
                  window.Click(kPlainOk);
              }),
              kSuccess);
    EXPECT_FALSE(session.m_resultBitmap.IsEmpty()) << "uncropped";
}

TEST_F(LiveSession, NothingIsMarkedByHand) {
    const Camera camera(video, FrameWithFace());
    Run([&](FakeWindow& window) {
        ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
        const Corners face = LockedMarks();
        window.Press(5, 5);
        window.Move(100, 100);
        EXPECT_EQ(window.Pointer(), Cursor::arrow);
        window.Release(100, 100);
        EXPECT_NEAR(LockedMarks().left, face.left, 3);
        EXPECT_NEAR(LockedMarks().right, face.right, 3);
        window.CloseBox();
    });
}

TEST_F(LiveSession, TheCursorIsACrossUntilAFaceIsFound) {
    Run([&](FakeWindow& window) { // no frames: nothing is ever found
        window.Move(100, 100);
        EXPECT_EQ(window.Pointer(), Cursor::cross);
        window.CloseBox();
    });
}

TEST_F(LiveSession, CommandsOfTheAdjustingStageWaitForIt) {
    g_actionEnabled = {1, 1, 1, 1, 0, 0};
    const Camera camera(video, FrameWithFace());
    Run([&](FakeWindow& window) {
        ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
        for (const int32 id :
             {kPlainColor, kSkinColor, kTurnOn1, kTurnBack90, kToleranceUp, kToleranceDown, kPlainClear, kSkinClear}) {
            window.events.OnCommand(id); // no operator could: they are hidden or disabled
        }
        window.DragSlider(77);
        EXPECT_TRUE(HasFace());
        EXPECT_TRUE(session.m_resultBitmap.IsEmpty()) << "no pipeline runs beside the detection";
        window.CloseBox();
    });
}

TEST_F(LiveSession, AnOwnerThatGoesEndsTheSession) {
    const Camera camera(video, FrameWithFace());
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
                  window.DestroyFromOutside();
              }),
              kCancelled);
    EXPECT_EQ(session.m_capture, nullptr);
}

TEST_F(LiveSession, ADeviceThatNeverDeliversCanBeCancelled) {
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  EXPECT_TRUE(ServeUntil(window, [&] { return window.Preview().width > 0; })) << "a black picture";
                  window.CloseBox();
              }),
              kCancelled);
    EXPECT_FALSE(windows.texts.empty()) << "with a question mark";
}

TEST_F(LiveSession, ADeviceThatDiesLeavesItsLastPicture) {
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  {
                      const Camera camera(video, FrameWithFace());
                      ASSERT_TRUE(ServeUntil(window, [&] { return HasFace(); }));
                  }
                  std::this_thread::sleep_for(std::chrono::milliseconds(100));
                  window.Pump();
                  EXPECT_TRUE(ShowsYellow(window));
                  EXPECT_TRUE(window.Click(kPlainOk));
              }),
              kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 120);
}

TEST_F(LiveSession, OneAfterTheOtherLeavesNothingBehind) {
    constexpr int32 kSessions = 12; // `./dev soak` runs more
    const Camera camera(video, FrameWithFace());
    for (int32 number = 0; number < kSessions; ++number) {
        const int32 result = Run([&](FakeWindow& window) {
            window.Pump();
            if (number % 3 == 0) window.Click(kPlainFreeze);
            window.Click(number % 2 == 0 ? kPlainOk : kCancelButton);
        });
        EXPECT_EQ(result, number % 2 == 0 ? kSuccess : kCancelled);
        EXPECT_EQ(video.sourcesAlive, 0);
    }
}

TEST_F(LiveSession, AWindowThatIsNeverServedIsNotFlooded) {
    const Camera camera(video, FrameWithFace());
    constexpr auto kPause = std::chrono::milliseconds(30); // at least, from one picture to the next
    Run([&](FakeWindow& window) {
        std::this_thread::sleep_for(100 * kPause);
        const int32 before = windows.Count("preview 400 300");
        const auto start = std::chrono::steady_clock::now();
        window.Pump();
        const auto arrived = (std::chrono::steady_clock::now() - start) / kPause + 1;
        EXPECT_LE(windows.Count("preview 400 300") - before, 64 + arrived);
        EXPECT_TRUE(ShowsYellow(window)) << "what comes last is the newest";
        window.CloseBox();
    });
}

TEST_F(LiveSession, StopLiveThreadsGivesUpOnFlagsThatNobodySets) {
    StartWithoutThreads();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(session.StopLiveThreads(), 1);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::seconds(5)) << "5000 rounds of at least a millisecond";
    EndWithoutThreads();
}

} // namespace
} // namespace orvane
