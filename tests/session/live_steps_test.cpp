// The rounds of the two live threads, one by one: what is drawn, and how the rectangle comes, stays and goes.
#include "image/packed_dib.h"
#include "tests/session/live_fixture.h"
#include "tests/support/heap_limit.h"

#include <climits>

namespace orvane {
namespace {

using test::DuringDetection;
using test::FrameWithFace;
using test::FrameWithoutFace;
using test::Scene;

class LiveSteps : public test::LiveTest {
protected:
    LiveSteps() { StartWithoutThreads(); }
    ~LiveSteps() override { EndWithoutThreads(); }

    void ExpectFaceNear(int32 left) const {
        EXPECT_NEAR(session.m_markLeft, left, 6);
        EXPECT_NEAR(session.m_markRight, left + 40, 6);
        EXPECT_NEAR(session.m_markTop, 40, 6);
        EXPECT_NEAR(session.m_markBottom, 80, 6);
    }
};

constexpr Corners kNone{-1, -1, -1, -1};
constexpr Corners kZero{0, 0, 0, 0};

TEST_F(LiveSteps, AFrameBecomesTheSourceAsItCame) {
    const Scene frame = FrameWithFace();
    video.Deliver(frame);
    EXPECT_TRUE(session.FrameThreadStep());
    ASSERT_EQ(session.m_sourceBitmap.Width(), 160);
    EXPECT_EQ(std::vector<uint8>(session.m_sourceBitmap.Bits(), session.m_sourceBitmap.Bits() + frame.rows.size()),
              frame.rows);
}

TEST_F(LiveSteps, BeforeTheFirstFrameThePictureIsBlack) {
    EXPECT_TRUE(session.FrameThreadStep());
    ASSERT_FALSE(session.m_sourceBitmap.IsEmpty());
    for (int32 i = 0; i < 160 * 120 * 3; ++i) ASSERT_EQ(session.m_sourceBitmap.Bits()[i], 0);
    EXPECT_TRUE(session.DetectThreadStep()) << "and has no face";
    EXPECT_EQ(session.m_missCount, 1);
}

TEST_F(LiveSteps, WithoutAPictureNothingIsDetected) {
    EXPECT_TRUE(session.DetectThreadStep());
    EXPECT_EQ(session.m_missCount, 0);
    EXPECT_EQ(Marks(), kNone);
}

TEST_F(LiveSteps, AFaceIsMarkedInPixelsOfTheFrame) {
    Show(FrameWithFace(60));
    ExpectFaceNear(60);
    EXPECT_EQ(Anchors(), Marks());
    EXPECT_EQ(session.m_missCount, 0);
    Show(FrameWithFace(20));
    ExpectFaceNear(20);
}

TEST_F(LiveSteps, TheDetectionIsQuick) {
    DuringDetection scan([] {});
    Show(FrameWithoutFace());
    EXPECT_EQ(scan.passes, 1) << "no second pass without a face";
}

TEST_F(LiveSteps, RoundsAfterTheFirstAskForNoPicturesMemory) {
    constexpr int32 kWidth = 1280, kHeight = 960; // so that only pictures are so large
    EndWithoutThreads();
    video.devices[0].size = {kWidth, kHeight};
    StartWithoutThreads();
    const test::HeapWatch pictures(std::size_t{kWidth} * kHeight);
    const auto requestsOfRound = [&](int32 left) {
        EXPECT_TRUE(video.Deliver(test::FaceScene(kWidth, kHeight, left, 400, 320)));
        EXPECT_TRUE(session.FrameThreadStep());
        const int before = test::HeapWatch::Count();
        EXPECT_TRUE(session.DetectThreadStep());
        EXPECT_NEAR(session.m_markLeft, left, 40) << "each round looks at its own frame";
        return test::HeapWatch::Count() - before;
    };
    EXPECT_EQ(requestsOfRound(300), 3) << "source, work picture and grey plane";
    EXPECT_EQ(requestsOfRound(700), 0);
    EXPECT_EQ(requestsOfRound(500), 0);
    EndWithoutThreads();
    StartWithoutThreads();
    EXPECT_EQ(requestsOfRound(300), 1) << "the grey plane went with its session";
}

TEST_F(LiveSteps, ALostFaceKeepsItsRectangleForSevenRoundsAndGoesAtTheEighth) {
    Show(FrameWithFace());
    const Corners face = Marks();
    for (int32 round = 1; round <= COrvQuickViewDlg::MaxMissedDetections; ++round) {
        Show(FrameWithoutFace());
        EXPECT_EQ(Marks(), face) << "round " << round;
        EXPECT_EQ(Anchors(), face) << "round " << round;
        EXPECT_EQ(session.m_missCount, round);
    }
    Show(FrameWithoutFace());
    EXPECT_EQ(Marks(), kZero);
    EXPECT_EQ(Anchors(), kZero);
    Show(FrameWithoutFace());
    EXPECT_EQ(Marks(), kZero);
}

TEST_F(LiveSteps, AFaceFoundAgainSetsTheCounterBackAtOnce) {
    Show(FrameWithFace(60));
    for (int32 round = 0; round < 7; ++round) Show(FrameWithoutFace());
    EXPECT_EQ(session.m_missCount, 7);
    Show(FrameWithFace(20));
    EXPECT_EQ(session.m_missCount, 0);
    ExpectFaceNear(20);
    for (int32 round = 0; round < 7; ++round) Show(FrameWithoutFace());
    ExpectFaceNear(20);
}

TEST_F(LiveSteps, AtFirstNoRectangleStandsWhateverTheRound) {
    for (int32 round = 0; round < 7; ++round) {
        Show(FrameWithoutFace());
        EXPECT_EQ(Marks(), kNone);
        EXPECT_EQ(Anchors(), kNone);
    }
    Show(FrameWithoutFace());
    EXPECT_EQ(Marks(), kZero);
}

TEST_F(LiveSteps, ADetectionThatFailsShowsNoFaceAndSetsTheCounterBack) {
    Show(FrameWithFace());
    Show(FrameWithoutFace());
    EXPECT_EQ(session.m_missCount, 1);
    const auto params = std::move(g_detectorParams);
    Show(FrameWithFace());
    EXPECT_EQ(Marks(), kZero) << "nobody wrote the rectangle of this round";
    EXPECT_EQ(session.m_missCount, 0);
}

TEST_F(LiveSteps, FreezeDuringADetectionDropsItsResult) {
    Show(FrameWithFace(60));
    const Corners face = Marks();
    {
        DuringDetection freeze([this] { session.m_capture->Pause(); });
        Show(FrameWithFace(20));
    }
    EXPECT_EQ(Marks(), face);
    EXPECT_EQ(Anchors(), face);
    session.m_capture->Run();
    {
        DuringDetection freeze([this] { session.m_capture->Pause(); });
        Show(FrameWithoutFace());
    }
    EXPECT_EQ(session.m_missCount, 0) << "nor does it count as a miss";
}

TEST_F(LiveSteps, WhileFrozenNothingIsGrabbedAndNothingDetected) {
    Show(FrameWithFace());
    const Corners face = Marks();
    const uint8* picture = session.m_sourceBitmap.Bits();
    session.m_capture->Pause();
    DuringDetection scan([] {});
    for (int32 round = 0; round < 20; ++round) {
        EXPECT_TRUE(session.FrameThreadStep());
        EXPECT_TRUE(session.DetectThreadStep());
    }
    EXPECT_EQ(scan.passes, 0);
    EXPECT_EQ(Marks(), face);
    EXPECT_EQ(session.m_sourceBitmap.Bits(), picture);
}

TEST_F(LiveSteps, TheDetectionEndsAfterTheFrameThread) {
    EXPECT_TRUE(session.FrameThreadStep());
    session.m_stage = COrvQuickViewDlg::kAdjusting;
    EXPECT_FALSE(session.FrameThreadStep());
    EXPECT_TRUE(session.m_frameThreadStopped);
    EXPECT_FALSE(session.m_detectThreadStopped);
    EXPECT_FALSE(session.DetectThreadStep());
    EXPECT_TRUE(session.m_detectThreadStopped);
}

TEST_F(LiveSteps, TheDetectionEndsWithTheFrameThreadWhateverTheStage) {
    session.m_frameThreadStopped = true;
    EXPECT_FALSE(session.DetectThreadStep());
    EXPECT_TRUE(session.m_detectThreadStopped);
}

TEST_F(LiveSteps, AHeldLockDelaysARoundAndLosesNothing) {
    Show(FrameWithFace());
    const Corners face = Marks();
    std::thread frame, detect;
    {
        const std::lock_guard held(session.m_stateMutex);
        frame = std::thread([this] { EXPECT_TRUE(session.FrameThreadStep()); });
        detect = std::thread([this] { EXPECT_TRUE(session.DetectThreadStep()); });
        detect.join(); // its patience is 500 milliseconds
        frame.join();  // and that of this one 1000
    }
    EXPECT_EQ(Marks(), face);
    Show(FrameWithFace(20));
    ExpectFaceNear(20);
}

TEST_F(LiveSteps, TheRectangleIsDrawnInPreviewPixels) {
    // 160 by 120 becomes 400 by 300: two and a half preview pixels for one of the frame's.
    session.m_anchorLeft = session.m_markLeft = 20;
    session.m_anchorTop = session.m_markTop = 10;
    session.m_anchorRight = session.m_markRight = 61;
    session.m_anchorBottom = session.m_markBottom = 50;
    Bitmap frame;
    ASSERT_TRUE(frame.Create(160, 120));
    const Bitmap overlay = session.RenderPreviewOverlay(frame, 0);
    ASSERT_EQ(overlay.Width(), 400);
    ASSERT_EQ(overlay.Height(), 300);
    const test::ShownPicture shown(ViewOf(overlay));
    constexpr ColourRef kYellow = 0x00FFFF;
    EXPECT_EQ(shown.At(50, 60), kYellow) << "the left side, 20 times 2.5";
    EXPECT_EQ(shown.At(153, 60), kYellow) << "the right side, 61 times 2.5 and a half, truncated";
    EXPECT_EQ(shown.At(100, 25), kYellow) << "the top";
    EXPECT_EQ(shown.At(100, 125), kYellow) << "the bottom";
    EXPECT_EQ(shown.At(100, 60), 0U) << "not filled";
}

TEST_F(LiveSteps, WithoutAFaceAQuestionMarkIsDrawn) {
    Show(FrameWithoutFace());
    windows.texts.clear();
    const Bitmap overlay = session.RenderPreviewOverlay(session.m_sourceBitmap, 0);
    ASSERT_EQ(windows.texts.size(), 1U);
    EXPECT_EQ(windows.texts[0].text, L"?");
    Show(FrameWithFace());
    windows.texts.clear();
    const Bitmap marked = session.RenderPreviewOverlay(session.m_sourceBitmap, 0);
    EXPECT_TRUE(windows.texts.empty());
}

} // namespace
} // namespace orvane
