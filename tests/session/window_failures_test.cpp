// The window on an exhausted heap, and after failures of detector and actions: a result, never a crash.
#include "image/packed_dib.h"
#include "image/session_images.h"
#include "tests/session/window_fixture.h"
#include "tests/support/heap_limit.h"
#include "tests/support/whole_session.h"

#include <atomic>
#include <cstdio>
#include <functional>
#include <string>
#include <thread>

namespace orvane {
namespace {

using test::FakeWindow;
using test::kAllActions;

class WindowFailures : public test::WindowTest {
protected:
    /// Refused primitives say so on the standard output.
    int32 RunQuietly(const test::Scene& scene, const Script& script) {
        ::testing::internal::CaptureStdout();
        const int32 result = Run(scene, script);
        std::fflush(stdout);
        ::testing::internal::GetCapturedStdout();
        return result;
    }
    static void Work(FakeWindow& window) { test::WorkThroughSession(window, {100, 50}, {200, 150}); }
    static void ForgetPictures() {
        for (ImageBuffer* image :
             {&g_sourceImage, &g_workImage, &g_maskImage, &g_colourStageImage, &g_colourStageMask}) {
            image->Reset();
        }
    }
    void ExpectEnded() const {
        ExpectNoMarks();
        EXPECT_EQ(session.m_stage, 1);
        EXPECT_TRUE(session.m_sourceBitmap.IsEmpty());
    }
};

TEST_F(WindowFailures, MemoryExhaustedFromAnyRequestOnEndsTheSessionWithACode) {
    const test::Scene scene = test::FaceScene(80, 80, 25, 25, 30);
    int32 granted = 0;
    for (bool done = false; !done; granted += granted < 40 ? 1 : 7) {
        ASSERT_LT(granted, 10'000);
        ForgetPictures();
        g_actionEnabled = kAllActions;
        int32 result;
        {
            const test::HeapLimit limit(granted);
            result = RunQuietly(scene, Work);
        }
        SCOPED_TRACE(std::to_string(granted) + " requests granted");
        done = result == kSuccess && !session.m_resultBitmap.IsEmpty();
        ASSERT_TRUE(done || result == kOutOfMemory || result == kCancelled) << result;
        ASSERT_EQ(session.m_resultBitmap.IsEmpty(), result != kSuccess) << "an output, or a code that says why not";
        ExpectEnded();
    }
    EXPECT_GT(granted, 60);
}

TEST_F(WindowFailures, OneRefusedRequestAnywhereLeavesAnOutputOrACode) {
    const test::Scene scene = test::FaceScene(80, 80, 25, 25, 30);
    bool reached = true;
    for (int32 refused = 0; reached; refused += refused < 40 ? 1 : 5) {
        SCOPED_TRACE("request " + std::to_string(refused) + " refused");
        ASSERT_LT(refused, 10'000);
        ForgetPictures();
        g_actionEnabled = kAllActions;
        int32 result;
        {
            const test::HeapFault fault(refused);
            result = RunQuietly(scene, Work);
            reached = test::HeapFault::Happened();
        }
        ASSERT_TRUE(result == kSuccess || result == kOutOfMemory || result == kCancelled) << result;
        ASSERT_EQ(session.m_resultBitmap.IsEmpty(), result != kSuccess);
        ExpectEnded();
    }
}

TEST_F(WindowFailures, NoStorageForTheOutputIsOutOfMemory) {
    g_actionEnabled = kAllActions;
    EXPECT_EQ(RunQuietly(test::SmallFaceScene(),
                         [](FakeWindow& window) {
                             window.Click(kPlainOk);
                             const test::HeapLimit nothing(0);
                             window.Click(kPlainOk);
                             EXPECT_TRUE(window.HasEnded());
                         }),
              kOutOfMemory);
    EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
    EXPECT_EQ(RunQuietly(test::SmallFaceScene(),
                         [](FakeWindow& window) {
                             window.Click(kPlainOk);
                             const test::HeapLimit nothing(0);
                             window.Click(kCancelButton);
                         }),
              kOutOfMemory);
}

TEST_F(WindowFailures, NoStorageWhileAFaceIsPlacedEndsTheWindow) {
    EXPECT_EQ(RunQuietly(test::BlankScene(160, 120),
                         [](FakeWindow& window) {
                             window.Press(100, 50);
                             ForgetPictures();
                             const test::HeapLimit nothing(0);
                             window.Press(200, 150);
                             EXPECT_TRUE(window.HasEnded());
                         }),
              kOutOfMemory);
    EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
    ExpectEnded();
}

TEST_F(WindowFailures, APictureThatCannotBeMadeLeavesThePreviewAsItWas) {
    RunQuietly(test::SmallFaceScene(), [](FakeWindow& window) {
        window.Pump();
        window.Press(100, 50);
        window.Move(150, 100);
        window.Pump();
        const test::ShownPicture before = window.Preview();
        {
            const test::HeapLimit nothing(0);
            window.Move(160, 110);
            EXPECT_EQ(window.Pump(), 0);
        }
        EXPECT_TRUE(window.Preview() == before);
        EXPECT_FALSE(window.HasEnded());
        window.Move(170, 120);
        EXPECT_EQ(window.Pump(), 1) << "the next one is shown again";
    });
}

TEST_F(WindowFailures, ATurnWithoutStorageLeavesThePreviewAndTheNextOneWorks) {
    g_actionEnabled = {1, 0, 0, 1, 0, 0};
    EXPECT_EQ(RunQuietly(test::SmallFaceScene(),
                         [this](FakeWindow& window) {
                             window.Click(kPlainOk);
                             window.Pump();
                             const test::ShownPicture before = window.Preview();
                             {
                                 const test::HeapLimit nothing(0);
                                 window.Click(kTurnOn1);
                                 window.Pump();
                             }
                             EXPECT_TRUE(window.Preview() == before);
                             EXPECT_EQ(session.m_rotation, 1);
                             window.Click(kTurnOn1);
                             EXPECT_EQ(window.Pump(), 1);
                             EXPECT_FALSE(window.Preview() == before);
                             window.Click(kPlainOk);
                         }),
              kSuccess);
    EXPECT_FALSE(session.m_resultBitmap.IsEmpty());
}

TEST_F(WindowFailures, WhatIsThrownInAnEventEndsTheWindow) {
    struct Case {
        const char* call;
        std::function<void(FakeWindow&)> event;
    };
    const Case kCases[] = {
        {"cursor arrow", [](FakeWindow& window) { window.Move(5, 5); }},
        {"cursor wait", [](FakeWindow& window) { window.Click(kPlainOk); }},
        {"repaint", [](FakeWindow& window) { window.Click(kPlainOk); }},
        {"confirm", [](FakeWindow& window) { window.Click(kPlainOk); }},
        {"about", [](FakeWindow& window) { window.events.OnSysCommand(16); }},
        {"rest", [](FakeWindow& window) { window.Pump(); }},
        {"preview", [](FakeWindow& window) { window.Pump(); }},
        {"disable 1016", [](FakeWindow& window) { window.Click(kPlainClear); }},
        {"enable 1015",
         [](FakeWindow& window) {
             window.Press(5, 5);
             window.Press(90, 90);
         }},
        {"read 1024", [](FakeWindow& window) { window.events.OnEditChanged(kRotationEdit); }},
        {"read 1003", [](FakeWindow& window) { window.events.OnToleranceReleased(); }},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.call);
        g_actionEnabled = kAllActions;
        const int32 result = Run([&](FakeWindow& window) {
            windows.exhaustedAt = c.call;
            c.event(window);
            EXPECT_TRUE(windows.exhaustedAt.empty()) << "it came to that call";
            EXPECT_TRUE(window.HasEnded());
        });
        EXPECT_EQ(result, kOutOfMemory);
        EXPECT_EQ(g_actionEnabled, kAllActions) << "no flag is lost";
        EXPECT_TRUE(session.m_resultBitmap.IsEmpty()) << "nothing half made passes for a portrait";
        ExpectEnded();
    }
}

TEST_F(WindowFailures, WhatIsThrownAtTheOpeningEndsTheWindowBeforeItShows) {
    for (const char* call : {"title", "skin 1008", "text 1004", "text 1024", "range", "focus"}) {
        SCOPED_TRACE(call);
        windows.exhaustedAt = call;
        EXPECT_EQ(Run([](FakeWindow&) { ADD_FAILURE() << "it showed"; }), kOutOfMemory);
        ExpectEnded();
        EXPECT_EQ(Run([](FakeWindow& window) { window.Click(kPlainOk); }), kSuccess) << "the next one works";
    }
}

TEST_F(WindowFailures, AnEditAnswersAgainAfterItsTextFailed) {
    windows.exhaustedAt = "text 1003";
    EXPECT_EQ(Run([](FakeWindow&) {}), kOutOfMemory);
    Adjust({1, 1, 0, 0, 0, 0}, [this](FakeWindow& window) {
        window.Type(kToleranceEdit, L"77");
        EXPECT_EQ(session.m_tolerance, 77);
    });
}

TEST_F(WindowFailures, AHiddenSessionWhoseWindowRunsOutOfMemoryHasNoOutput) {
    session.m_visible = false;
    EXPECT_EQ(Run(test::BlankScene(160, 120),
                  [this](FakeWindow& window) {
                      windows.exhaustedAt = "cursor";
                      window.Move(5, 5);
                  }),
              kNoFace);
    EXPECT_TRUE(session.m_resultBitmap.IsEmpty()) << "the work picture must not pass for a portrait";
}

TEST_F(WindowFailures, AFailingActionIsNotReportedAndDoesNotStopTheWindow) {
    g_actionEnabled = {1, 1, 1, 1, 1, 0}; // slot 4 ends the chain with a failure
    EXPECT_EQ(Run([](FakeWindow& window) {
                  window.Click(kPlainOk);
                  EXPECT_FALSE(window.HasEnded());
                  EXPECT_EQ(window.Pump(), 2) << "the animation's step, and the portrait";
                  window.Click(kPlainOk);
              }),
              kSuccess);
    EXPECT_FALSE(session.m_resultBitmap.IsEmpty());
    EXPECT_TRUE(windows.messages.empty());
}

TEST_F(WindowFailures, ALockThatCannotBeHadStopsNothing) {
    std::atomic<bool> held = false, release = false;
    g_actionEnabled = test::kCropAlone;
    EXPECT_EQ(Run([&](FakeWindow& window) {
                  std::thread holder([&] { // another thread keeps the state
                      session.m_stateMutex.lock();
                      held = true;
                      while (!release) std::this_thread::yield();
                      session.m_stateMutex.unlock();
                  });
                  while (!held) std::this_thread::yield();
                  window.Click(kPlainOk);
                  release = true;
                  holder.join();
              }),
              kSuccess);
}

} // namespace
} // namespace orvane
