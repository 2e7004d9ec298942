// A live session whose cameras and window are played by the test. The steps of its threads may be run one by one.
#pragma once

#include "actions/action_settings.h"
#include "detect/candidates.h"
#include "tests/session/session_fixture.h"
#include "tests/support/during_detection.h"
#include "tests/support/fake_video.h"
#include "tests/support/fake_window.h"
#include "tests/support/host_block.h"

#include <chrono>
#include <functional>
#include <thread>
#include <utility>

namespace orvane::test {

/// A frame of the first camera with a face of 40 pixels at column `left`, 40 rows above the bottom.
inline Scene FrameWithFace(int32 left = 60) { return FaceScene(160, 120, left, 40, 40); }
inline Scene FrameWithoutFace() { return BlankScene(160, 120); }

/// The first camera has frames of 160 by 120; the preview is 400 pixels wide and high at the most.
class LiveTest : public SessionTestWith<FakeWindowSystem, FakeVideo> {
protected:
    using Script = std::function<void(FakeWindow&)>;

    LiveTest() {
        video.devices.resize(1);
        session.m_previewMaxWidth = session.m_previewMaxHeight = 400;
        session.m_outputWidth = 120;
        session.m_outputHeight = 160;
        g_actionEnabled = {1, 0, 0, 0, 0, 0};
    }
    ~LiveTest() override {
        EXPECT_EQ(windows.callsOutside, 0) << "a window is not asked before and after it stands";
        EXPECT_EQ(windows.windowsAlive, 0) << "a window goes with its session";
        EXPECT_EQ(video.sourcesAlive, session.m_capture == nullptr ? 0 : 1) << "a camera goes with its session";
    }

    /// A whole live session on the first camera; its result.
    int32 Run(Script script) {
        windows.script = std::move(script);
        return session.DetectFaceLive(0);
    }

    /// The state of a running session with no window and no threads: the test runs their steps.
    void StartWithoutThreads() {
        session.m_sourceMode = COrvQuickViewDlg::kLiveMode;
        int32 width = 0, height = 0;
        ASSERT_EQ(session.OpenCapture(0, width, height), kSuccess);
        session.m_bitmapHeader = OutgoingHeader(width, height);
        session.ComputeWorkSize();
        session.m_capture->Run();
        session.m_frameThreadStopped = session.m_detectThreadStopped = false;
    }
    /// As both threads would leave.
    void EndWithoutThreads() {
        session.m_frameThreadStopped = session.m_detectThreadStopped = true;
        session.EndSession();
    }
    /// One frame on its way through both threads.
    void Show(const Scene& frame) {
        ASSERT_TRUE(video.Deliver(frame));
        EXPECT_TRUE(session.FrameThreadStep());
        EXPECT_TRUE(session.DetectThreadStep());
    }

    Corners Marks() const { return {session.m_markLeft, session.m_markTop, session.m_markRight, session.m_markBottom}; }
    Corners Anchors() const {
        return {session.m_anchorLeft, session.m_anchorTop, session.m_anchorRight, session.m_anchorBottom};
    }

    /// Waits for what threads bring about; false when it does not come within some seconds.
    static bool Comes(const std::function<bool()>& what) {
        for (int32 waited = 0; waited < 10'000; waited += 2) {
            if (what()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return false;
    }
};

} // namespace orvane::test

namespace orvane {

inline bool operator==(const Corners& a, const Corners& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline void PrintTo(const Corners& c, std::ostream* out) {
    *out << c.left << ", " << c.top << ", " << c.right << ", " << c.bottom;
}

} // namespace orvane
