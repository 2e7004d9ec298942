// The twelve functions that a host sees. No exception leaves them: whatever was thrown inside can only
// have been exhausted memory.
#if defined(__GNUC__) && !defined(_WIN32)
#define ORV_API __attribute__((visibility("default")))
#else
#define ORV_API
#endif
#include "orvane/orvane.h"

#include "actions/action_settings.h"
#include "capture/video_system.h"
#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "dialog/window_system.h"
#include "image/packed_dib.h"
#include "platform/memory_block.h"
#include "platform/module_folder.h"
#include "platform/process_end.h"
#include "platform/thread_apartment.h"
#include "primitives/dispatch.h"
#include "session/session_state.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <thread>
#include <utility>

using namespace orvane;

namespace {

/// The low byte of a boolean argument.
bool IsTrue(orv_Bool value) { return (value & 0xFF) != 0; }

/// Runs the body of an export; exhausted memory becomes a result.
template <typename Body>
int32_t Guarded(Body body) {
    try {
        return body();
    } catch (...) {
        return kOutOfMemory;
    }
}

/// The same for those exports that need a session.
template <typename Body>
int32_t InSession(Body body) {
    if (g_dialog == nullptr) return kNoSession;
    return Guarded([&] { return body(*g_dialog); });
}

// A thread of the host is inside a detect call, perhaps in its window's loop.
std::atomic<bool> g_running = false;
std::atomic<std::thread::id> g_runner; // that thread
std::atomic<bool> g_leaving = false;   // the library goes: no call begins any more

/// The same for the detect calls, which may not begin inside one another.
template <typename Body>
int32_t Running(Body body) {
    if (g_leaving || g_running.exchange(true)) return kNoSession;
    struct Mark {
        Mark() { g_runner = std::this_thread::get_id(); }
        ~Mark() { g_running = false; }
    };
    const Mark mark;
    const ThreadApartment apartment; // the session's own belongs to the thread that opened it
    return InSession(body);
}

/// Takes the place of a detect call, so that none begins any more. False while this thread is in one, or another
/// thread's doesn't end: a detection ends by itself, a window does not.
bool KeepOthersOut() {
    constexpr int32 kRounds = 30'000;
    g_leaving = true; // a host that begins the next detection at once would never leave room
    for (int32 round = 0; round < kRounds; ++round) {
        if (!g_running.exchange(true)) return true;
        if (g_runner.load() == std::this_thread::get_id()) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

int32 CloseSession() {
    const int32 result = g_detectorParams == nullptr ? kNoSession : kSuccess;
    if (g_detectorParams != nullptr) {
        FreeClassifier(g_classifier);
        g_detectorParams.reset();
    }
    g_dialog.reset();
    return result;
}

/// The library goes, perhaps with its session open: the host unloads it, or the process ends. Registered when the
/// first session opens, so that it runs before anything that a session uses is destroyed.
void LeaveSession() {
    if (!IsProcessEnding()) {
        if (KeepOthersOut()) {
            CloseSession();
            return;
        }
        // The process ends inside the call, which may stand further out on this very stack.
        g_dialog->m_stage = COrvQuickViewDlg::kAdjusting;
        g_dialog->StopLiveThreads();
    }
    [[maybe_unused]] static COrvQuickViewDlg* left;
    left = g_dialog.release(); // as it is, window and camera with it: the process gives them back
}

int32 OpenSession() {
    if (!FindModuleFolder()) return kNoSession;
    g_actionEnabled.fill(0);
    const int32 selection = SelectPrimitiveColumn();
    if (g_detectorParams == nullptr) {
        auto params = std::make_unique<DetectorParams>();
        params->loadStatus = LoadClassifier();
        // Unlike a missing file, exhausted memory may have passed by the next call.
        if (params->loadStatus == kOutOfMemory) return kOutOfMemory;
        g_detectorParams = std::move(params); // only now: the load may throw
    }
    if (selection != 0) return kNoSession;
    if (g_dialog == nullptr) g_dialog = std::make_unique<COrvQuickViewDlg>(ThisWindowSystem(), ThisVideoSystem());
    // A destructor, since that one is tied to this file however it goes, which not every runtime does with std::atexit.
    static const struct Leaving {
        ~Leaving() { LeaveSession(); }
    } leaving;
    constexpr int32 kPreviewBound = 400;
    g_dialog->m_previewWidth = g_dialog->m_previewHeight = kPreviewBound;
    g_dialog->m_previewMaxWidth = g_dialog->m_previewMaxHeight = kPreviewBound;
    return kSuccess;
}

} // namespace

extern "C" {

ORV_API int32_t orv_InitDLL(void) {
    if (g_running) return kNoSession; // what it would set anew is in use further out
    return Guarded(OpenSession);
}

ORV_API int32_t orv_ReleaseDLL(void) {
    if (g_running) return kNoSession; // the window and the session are in use further out
    return CloseSession();
}

ORV_API int32_t orv_SetLanguageFile(const char* path) {
    return InSession([&](COrvQuickViewDlg& session) { return session.m_language.SetLanguageFile(path); });
}

ORV_API int32_t orv_SetOwnerWindow(orv_Window owner) {
    return InSession([&](COrvQuickViewDlg& session) -> int32 {
        if (owner == nullptr || !ThisWindowSystem().IsWindowHandle(owner)) return kNoSession;
        session.m_ownerWindow = g_ownerWindow = owner;
        return kSuccess;
    });
}

ORV_API int32_t orv_SetVisibleMode(orv_Bool visible) {
    return InSession([&](COrvQuickViewDlg& session) {
        session.m_visible = IsTrue(visible);
        return kSuccess;
    });
}

ORV_API int32_t orv_SetSizeOutputImage(int32_t width, int32_t height) {
    return InSession([&](COrvQuickViewDlg& session) {
        session.m_outputWidth = width;
        session.m_outputHeight = height;
        return kSuccess;
    });
}

ORV_API int32_t orv_SetFaceCropRatio(float ratio) {
    g_cropRatio = ratio; // kept even when it is refused
    if (!(ratio > 0.0F)) return kBadCall;
    g_cropHeightFactor = ratio;
    g_cropWidthFactor = static_cast<float>(static_cast<double>(g_outputWidth) * ratio / g_outputHeight);
    return kSuccess;
}

ORV_API int32_t orv_EnableAction(int32_t action, orv_Bool enable) {
    const uint8 flag = IsTrue(enable) ? 1 : 0;
    if (action == ORV_ALL_ACTIONS) {
        g_actionEnabled.fill(flag);
        return kSuccess;
    }
    if (action < 0 || action >= kActionCount) return kBadCall;
    g_actionEnabled[static_cast<std::size_t>(action)] = flag;
    return kSuccess;
}

ORV_API int32_t orv_GetBitDepth(orv_Handle dib) {
    const LockedBlock block(dib);
    uint16 bitCount;
    constexpr std::size_t kAt = offsetof(BitmapHeader, biBitCount);
    if (block.Data() == nullptr || block.Size() < kAt + sizeof bitCount) return kLockFailed;
    std::memcpy(&bitCount, static_cast<const uint8*>(block.Data()) + kAt, sizeof bitCount);
    return bitCount;
}

ORV_API int32_t orv_DetectFacePicture(orv_Handle dib) {
    return Running([&](COrvQuickViewDlg& session) { return session.DetectFacePicture(dib); });
}

ORV_API int32_t orv_DetectFaceLive(int32_t deviceIndex) {
    return Running([&](COrvQuickViewDlg& session) { return session.DetectFaceLive(deviceIndex); });
}

ORV_API int32_t orv_GetOutputImage(orv_Handle* out) {
    return InSession([&](COrvQuickViewDlg& session) {
        return out == nullptr ? kNoSession : PackedDibFromBitmap(session.m_resultBitmap, out);
    });
}

} // extern "C"
