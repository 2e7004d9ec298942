// OK, Cancel, the close box, and a window that goes by itself: what each leaves to the host.
#include "image/packed_dib.h"
#include "tests/reference/pipeline.h"
#include "tests/session/window_fixture.h"
#include "tests/support/pictures.h"

namespace orvane {
namespace {

using test::FakeWindow;
using test::kAllActions;
using test::kCropAlone;

class WindowEnding : public test::WindowTest {
protected:
    /// The output must be that of a final run with these slots on the present state, by the plain form.
    void ExpectPlainOutput(const ActionFlags& enabled, ImageSize requested) {
        const ImageSize before{g_outputWidth, g_outputHeight};
        SetOutputGeometry(requested.width, requested.height);
        test::reference::PipelineState expected;
        expected.TakePresent();
        test::reference::RunPipeline(expected, enabled, session.m_rotation, session.m_tolerance);
        g_outputWidth = before.width;
        g_outputHeight = before.height;
        ImageBuffer output;
        Take(session.m_resultBitmap, output);
        EXPECT_SAME_PICTURE(output, expected.work);
    }
    void ExpectEnded() const {
        ExpectNoMarks();
        EXPECT_EQ(session.m_stage, 1);
        EXPECT_TRUE(session.m_sourceBitmap.IsEmpty());
    }
};

TEST_F(WindowEnding, TheFirstOkIsTheLastWhereNothingIsLeftToAdjust) {
    for (const uint8 crop : {uint8{1}, uint8{0}}) {
        g_actionEnabled = {crop, 0, 0, 0, 0, 0};
        EXPECT_EQ(Run([](FakeWindow& window) {
                      EXPECT_TRUE(window.Click(kPlainOk));
                      EXPECT_TRUE(window.HasEnded());
                  }),
                  kSuccess);
        ExpectEnded();
        if (crop != 0) {
            ExpectPlainOutput({1, 0, 0, 0, 0, 1}, {120, 160});
            EXPECT_GE(session.m_resultBitmap.Height(), 160);
        } else {
            EXPECT_EQ(session.m_resultBitmap.Width(), 160) << "the source's size";
            EXPECT_EQ(session.m_resultBitmap.Height(), 120);
        }
    }
}

TEST_F(WindowEnding, AnyAdjustableActionKeepsTheWindowAfterTheFirstOk) {
    for (const ActionFlags& actions : {ActionFlags{1, 1, 0, 0, 0, 0}, {1, 0, 1, 0, 0, 0}, {1, 0, 0, 1, 0, 0}}) {
        EXPECT_EQ(Adjust(actions,
                         [](FakeWindow& window) {
                             EXPECT_FALSE(window.HasEnded());
                             EXPECT_TRUE(window.Click(kPlainOk));
                             EXPECT_TRUE(window.HasEnded());
                         }),
                  kSuccess);
        ExpectEnded();
        ActionFlags final = actions;
        final[kSlotOutputScaling] = 1;
        EXPECT_EQ(g_actionEnabled, final);
        ExpectPlainOutput(final, {120, 160});
    }
}

TEST_F(WindowEnding, ASlotThatNobodyAdjustsDoesNotKeepTheWindow) {
    g_actionEnabled = {1, 0, 0, 0, 1, 1};
    EXPECT_EQ(Run([](FakeWindow& window) {
                  window.Click(kPlainOk);
                  EXPECT_TRUE(window.HasEnded());
              }),
              kSuccess);
    EXPECT_FALSE(session.m_resultBitmap.IsEmpty()) << "slot 4 ends the chain before the scaling";
}

TEST_F(WindowEnding, WithCropOffTheSecondOkGivesTheSourcesSize) {
    EXPECT_EQ(Adjust({0, 0, 1, 0, 0, 0}, [](FakeWindow& window) { window.Click(kPlainOk); }), kSuccess);
    EXPECT_EQ(session.m_resultBitmap.Width(), 160);
    EXPECT_EQ(session.m_resultBitmap.Height(), 120);
}

TEST_F(WindowEnding, TheOutputOfOkIsThatOfAHiddenSession) {
    for (const ActionFlags& actions : {kCropAlone, kAllActions}) {
        session.m_visible = false;
        g_actionEnabled = actions;
        ASSERT_EQ(Run([](FakeWindow&) {}), kSuccess);
        const std::vector<uint8> hidden = Output();
        ASSERT_FALSE(hidden.empty());
        session.m_visible = true;
        g_actionEnabled = actions;
        EXPECT_EQ(Run([](FakeWindow& window) {
                      window.Click(kPlainOk);
                      window.Click(kPlainOk);
                  }),
                  kSuccess);
        EXPECT_EQ(Output(), hidden);
    }
}

TEST_F(WindowEnding, CancelWhileMarkingIsACancelWithoutAnOutput) {
    ASSERT_EQ(Run([](FakeWindow& window) { window.Click(kPlainOk); }), kSuccess);
    g_actionEnabled = kAllActions;
    EXPECT_EQ(Run([](FakeWindow& window) {
                  EXPECT_TRUE(window.Click(kCancelButton));
                  EXPECT_TRUE(window.HasEnded());
              }),
              kCancelled);
    ExpectEnded();
    EXPECT_TRUE(session.m_resultBitmap.IsEmpty()) << "nor that of the session before";
    EXPECT_EQ(g_actionEnabled, kAllActions) << "the actions stay on";
    void* block = nullptr;
    EXPECT_EQ(PackedDibFromBitmap(session.m_resultBitmap, &block), kNoSession);
}

TEST_F(WindowEnding, CancelWhileAdjustingGivesTheCropAlone) {
    session.m_visible = false;
    g_actionEnabled = kCropAlone;
    ASSERT_EQ(Run([](FakeWindow&) {}), kSuccess);
    const std::vector<uint8> crop = Output();

    session.m_visible = true;
    EXPECT_EQ(Adjust(kAllActions,
                     [](FakeWindow& window) {
                         window.Click(kTurnOn90);
                         window.DragSlider(90);
                         EXPECT_TRUE(window.Click(kCancelButton));
                         EXPECT_TRUE(window.HasEnded());
                     }),
              kSuccess);
    EXPECT_EQ(Output(), crop);
    EXPECT_EQ(g_actionEnabled, (ActionFlags{1, 0, 0, 0, 0, 1})) << "off until the host enables them again";
    ExpectEnded();
}

TEST_F(WindowEnding, TheCloseBoxAndTheEscKeyCancelInEitherStage) {
    for (const bool escape : {false, true}) {
        const auto leave = [escape](FakeWindow& window) {
            if (escape) return window.Escape();
            window.CloseBox();
        };
        EXPECT_EQ(Run([&](FakeWindow& window) { leave(window); }), kCancelled);
        EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
        EXPECT_EQ(Adjust(kAllActions, leave), kCancelled);
        EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
        EXPECT_EQ(g_actionEnabled[kSlotBackground], 1) << "nothing is switched off";
        ExpectEnded();
    }
}

TEST_F(WindowEnding, AWindowThatGoesWithoutADecisionCountsAsCancelled) {
    EXPECT_EQ(Run([](FakeWindow& window) { window.DestroyFromOutside(); }), kCancelled);
    EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
    EXPECT_EQ(Adjust(kAllActions, [](FakeWindow& window) { window.DestroyFromOutside(); }), kCancelled);
    EXPECT_TRUE(session.m_resultBitmap.IsEmpty());
    ExpectEnded();
    EXPECT_EQ(Run([](FakeWindow&) {}), kCancelled) << "so does the end of the host's loop";
}

TEST_F(WindowEnding, OkAfterACancelledSessionIsASuccess) {
    EXPECT_EQ(Run([](FakeWindow& window) { window.CloseBox(); }), kCancelled);
    EXPECT_EQ(Run([](FakeWindow& window) { window.Click(kPlainOk); }), kSuccess);
    EXPECT_EQ(session.m_resultCode, 0);
}

TEST_F(WindowEnding, InAStageOfNoNameOkAndCancelEndTheWindow) {
    for (const int32 id : {kPlainOk, kCancelButton}) {
        EXPECT_EQ(Run([&](FakeWindow& window) {
                      session.m_stage = 3;
                      EXPECT_TRUE(window.Click(id));
                      EXPECT_TRUE(window.HasEnded()) << id;
                  }),
                  kSuccess);
        ExpectEnded();
    }
}

TEST_F(WindowEnding, ASecondOkAfterTheEndChangesNothing) {
    g_actionEnabled = kCropAlone;
    EXPECT_EQ(Run([this](FakeWindow& window) {
                  window.Click(kPlainOk);
                  const std::vector<uint8> portrait = Output();
                  const std::size_t calls = windows.log.size();
                  window.events.OnCommand(kPlainOk);
                  window.events.OnCommand(kCancelButton);
                  window.events.OnCancel();
                  EXPECT_EQ(windows.log.size(), calls);
                  EXPECT_EQ(Output(), portrait);
              }),
              kSuccess);
    EXPECT_FALSE(session.m_resultBitmap.IsEmpty());
}

TEST_F(WindowEnding, TheOutputSurvivesUntilTheNextSession) {
    g_actionEnabled = kCropAlone;
    ASSERT_EQ(Run([](FakeWindow& window) { window.Click(kPlainOk); }), kSuccess);
    for (int32 i = 0; i < 2; ++i) {
        void* block = nullptr;
        EXPECT_EQ(PackedDibFromBitmap(session.m_resultBitmap, &block), kSuccess);
        orv_BlockFree(block);
    }
}

TEST_F(WindowEnding, TwoHundredSessionsInARowEndAlike) {
    std::vector<uint8> first;
    for (int32 i = 0; i < 200; ++i) {
        g_actionEnabled = kCropAlone;
        const bool cancel = i % 4 == 3;
        ASSERT_EQ(Run(test::FaceScene(80, 80, 25, 25, 30),
                      [&](FakeWindow& window) {
                          if (i % 2 == 1) window.Pump();
                          window.Click(cancel ? kCancelButton : kPlainOk);
                      }),
                  cancel ? kCancelled : kSuccess)
            << i;
        if (i == 0) first = Output();
        ASSERT_EQ(Output(), cancel ? std::vector<uint8>() : first) << i;
    }
}

} // namespace
} // namespace orvane
