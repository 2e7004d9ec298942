// The live session: one thread fetches frames and draws them, another looks for the face on whatever frame is
// newest, and the video never waits for the detector.
//
// m_stateMutex guards what the threads share: stage, marks, anchors, the miss counter, the source bitmap and the
// stopped flags. It is held for a bitmap swap, a copy or an overlay, never for a detection and never together
// with the capture's own lock. A lock that can't be had in time is no reason to stop: the round goes without
// what it guards.

#include "detect/candidates.h"
#include "detect/cascade_detector.h"
#include "image/packed_dib.h"
#include "image/session_images.h"
#include "platform/thread_priority.h"
#include "session/session_state.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

namespace orvane {
namespace {

void Sleep(int32 milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

/// One round of a worker. What is thrown can only be exhausted memory, which may have passed by the next round.
template <typename Step>
bool Round(Step step) {
    try {
        return step();
    } catch (...) {
        Sleep(1);
        return true;
    }
}

} // namespace

std::unique_lock<std::timed_mutex> COrvQuickViewDlg::LockState(int32 milliseconds) {
    return {m_stateMutex, std::chrono::milliseconds(milliseconds)};
}

int32 COrvQuickViewDlg::OpenCapture(int32 deviceIndex, int32& width, int32& height) {
    if (!IsLive()) return kSuccess;
    width = height = 0;
    if (m_capture == nullptr) {
        m_capture = std::make_unique<CVideoCapture>(m_video, true);
        // -1 is no device, although it is one that can be asked for.
        if (deviceIndex >= 0 && m_capture->OpenDevice(deviceIndex)) {
            m_deviceIndex = deviceIndex;
            constexpr std::intptr_t kNobody = 1; // on purpose no window
            m_capture->ConfigureWindow(kNobody);
            width = m_capture->m_width;
            height = m_capture->m_height;
        }
    }
    if (width >= 1 && height >= 1) return kSuccess;
    StopLiveThreads();
    m_capture.reset();
    return kCaptureFailed;
}

int32 COrvQuickViewDlg::StartLive() {
    if (m_capture == nullptr) return -1;
    if (m_capture->m_playState != kRunning) m_capture->Run();
    m_sourceBitmap.Delete();
    m_resultBitmap.Delete();
    g_sourceImage.Reset(); // the picture of a session before must not pass for a frame
    m_bitmapHeader = OutgoingHeader(m_capture->m_width, m_capture->m_height);
    KeepOriginalSize();
    m_missCount = 0;
    // The flags are set back where a thread can't be had: nobody waits for one that never ran.
    const auto start = [this](std::thread& thread, bool& stopped, int32 (COrvQuickViewDlg::*body)()) {
        stopped = false;
        try {
            thread = std::thread(body, this);
        } catch (...) {
            stopped = true;
            throw;
        }
    };
    const auto lock = LockState(kStatePatience); // the first thread finds both flags set
    start(m_frameThread, m_frameThreadStopped, &COrvQuickViewDlg::FrameThreadProc);
    start(m_detectThread, m_detectThreadStopped, &COrvQuickViewDlg::DetectThreadProc);
    return 1;
}

int32 COrvQuickViewDlg::StopLiveThreads() {
    constexpr int32 kRounds = 5000;
    if (!IsLive()) return 1;
    for (int32 round = 0; round < kRounds; ++round) {
        {
            const auto lock = LockState(kStatePatience);
            if (lock && m_frameThreadStopped && m_detectThreadStopped) break;
        }
        Sleep(1);
    }
    // Nothing that they use may go before they are out, however long a last detection takes.
    if (m_frameThread.joinable()) m_frameThread.join();
    if (m_detectThread.joinable()) m_detectThread.join();
    return 1;
}

int32 COrvQuickViewDlg::FrameThreadProc() {
    constexpr int32 kStartDelay = 350;
    constexpr int32 kPause = 30;
    SetThreadPriority(ThreadPriority::aboveNormal);
    Sleep(kStartDelay);
    while (Round([this] { return FrameThreadStep(); })) Sleep(kPause);
    return 1;
}

int32 COrvQuickViewDlg::DetectThreadProc() {
    SetThreadPriority(ThreadPriority::belowNormal);
    while (Round([this] { return DetectThreadStep(); })) {
    }
    return 1;
}

bool COrvQuickViewDlg::FrameThreadStep() {
    constexpr int32 kPatience = 1000;
    {
        const auto lock = LockState(kPatience);
        if (!lock) return true;
        if (m_stage != kMarking) {
            m_frameThreadStopped = true;
            return false;
        }
    }
    Bitmap frame = m_capture->GrabFrame();
    if (frame.IsEmpty()) return true; // frozen: the last picture stays on the screen
    Bitmap overlay;
    {
        const auto lock = LockState(kPatience);
        if (!lock) return true;
        m_sourceBitmap = std::move(frame);
        overlay = RenderPreviewOverlay(m_sourceBitmap, 0);
    }
    PostPreview(std::move(overlay));
    return true;
}

bool COrvQuickViewDlg::DetectThreadStep() {
    {
        auto lock = LockState(kStatePatience);
        if (!lock) return true;
        if (m_stage != kMarking || m_frameThreadStopped) { // after the frame thread, never before it
            m_detectThreadStopped = true;
            return false;
        }
        const bool running = m_capture->m_playState == kRunning;
        if (!running || !LoadBitmapIntoSource(m_sourceBitmap)) {
            lock.unlock();
            Sleep(1);
            return true;
        }
    }
    int32 corners[4] = {0, 0, 0, 0}; // a scan that fails shows as "?"
    const int32 status = ScanForFace(true, corners, m_detectionMemory);

    const auto lock = LockState(kStatePatience);
    if (!lock) return true;
    if (m_capture->m_playState == kRunning) StoreLiveFace(status, corners);
    m_anchorLeft = m_markLeft;
    m_anchorTop = m_markTop;
    m_anchorRight = m_markRight;
    m_anchorBottom = m_markBottom;
    return true;
}

void COrvQuickViewDlg::StoreLiveFace(int32 status, const int32 corners[4]) {
    m_missCount = status == kNoFace ? m_missCount + 1 : 0;
    if (status == kNoFace && m_missCount <= MaxMissedDetections) return; // the last rectangle stays
    m_markLeft = corners[0];
    m_markTop = corners[1];
    m_markRight = corners[2];
    m_markBottom = corners[3];
}

void COrvQuickViewDlg::OnBnClickedFreeze() {
    constexpr int32 kFreezeText = 1, kUnfreezeText = 2;
    if (!IsLive() || m_capture == nullptr) return;
    const auto lock = LockState(kStatePatience);
    const bool freeze = m_capture->m_playState == kRunning;
    m_window->SetText(m_freezeButton, m_language.GetLanguageText(freeze ? kUnfreezeText : kFreezeText).c_str());
    if (freeze) {
        m_capture->Pause();
    } else {
        m_capture->Run();
    }
}

void COrvQuickViewDlg::EndCapture() {
    if (m_capture == nullptr) return;
    {
        const auto lock = LockState(kStatePatience);
        m_stage = kAdjusting; // tells the live threads to go
    }
    StopLiveThreads();
    m_detectionMemory.grey.Reset();
    m_capture.reset();
}

void COrvQuickViewDlg::TakeLiveFrame() {
    if (m_capture == nullptr) return;
    EndCapture();
    // What the operator saw last becomes the portrait, and the crop goes by the rectangle on it.
    if (!LoadBitmapIntoSource(m_sourceBitmap)) return;
    PlaceLiveFace();
}

int32 COrvQuickViewDlg::PlaceLiveFace() {
    return SetFaceRect(std::min(m_markLeft, m_markRight), std::min(m_markTop, m_markBottom),
                       std::abs(m_markRight - m_markLeft), std::abs(m_markBottom - m_markTop));
}

} // namespace orvane
