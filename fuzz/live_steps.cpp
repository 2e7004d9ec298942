// Live sessions whose threads are played, step by step on one thread: frames of any length at any time, a camera that
// is held, an operator in between. Frames arrive as they were sent, marks and anchors agree, and the end is reached.
#include "actions/action_settings.h"
#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "fuzz/support/choices.h"
#include "fuzz/support/expect.h"
#include "fuzz/support/library_folder.h"
#include "fuzz/support/play_operator.h"
#include "fuzz/support/played_threads.h"
#include "primitives/dispatch.h"
#include "session/quick_view_dlg.h"
#include "tests/support/during_detection.h"
#include "tests/support/fake_video.h"
#include "tests/support/fake_window.h"
#include "tests/support/fresh_session.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

using namespace orvane;
using fuzz::Expect;
using fuzz::ExpectOneOf;

namespace {

/// The classifier that finds drawn faces, loaded once.
void LoadOnce() {
    static const bool loaded = [] {
        static const fuzz::LibraryFolder folder;
        folder.Write("Orvane.dat", test::FaceCascade().Bytes());
        return SelectPrimitiveColumn() == 0 && LoadClassifier() == kSuccess;
    }();
    Expect(loaded, "the classifier is loaded");
}

class LiveRun final : public fuzz::PlayedThreads {
public:
    explicit LiveRun(fuzz::Choices& choices) : choices_(choices) {
        LoadOnce();
        g_detectorParams = std::make_unique<DetectorParams>();
        session_.m_previewMaxWidth = session_.m_previewMaxHeight = 100;
        session_.m_outputWidth = choices.Int(70, 160);
        session_.m_outputHeight = choices.Int(70, 160);
        windows_.canOpen = choices.Int(0, 7) != 7;
        windows_.makes = choices.Int(0, 7) != 7;
        windows_.opens = choices.Int(0, 7) != 7;
        windows_.hasSlider = choices.Int(0, 7) != 7;
        windows_.script = [this](test::FakeWindow& window) { Serve(window); };
    }
    ~LiveRun() {
        g_detectorParams.reset();
        Expect(windows_.windowsAlive == 0, "a window goes with its session");
        Expect(windows_.callsOutside == 0, "a window is not asked before and after it stands");
    }

    void Run() {
        for (int32 sessions = choices_.Int(1, 3); sessions > 0; --sessions) {
            const int32 slots = choices_.Int(0, 15);
            for (std::size_t slot = 0; slot < 4; ++slot) g_actionEnabled[slot] = static_cast<uint8>(slots >> slot & 1);
            device_ = {choices_.Int(0, 3) == 3 ? choices_.Int(-1, 2) : 96, choices_.Flag() ? choices_.Int(0, 90) : 72};
            video_.devices = {{device_, choices_.Int(0, 7) != 7}};
            sent_.clear();
            length_ = 0;
            const int32 result = session_.DetectFaceLive(choices_.Int(0, 7) == 7 ? 1 : 0);
            ExpectOneOf(result, {kSuccess, kCancelled, kCaptureFailed, kStepFailed},
                        "a live session ends with a documented result");
            Expect(session_.m_sourceBitmap.IsEmpty() && session_.m_capture == nullptr, "its frame and camera go");
            Expect(session_.m_markLeft == -1 && session_.m_anchorLeft == -1, "and its marks");
            Expect(session_.m_frameThreadStopped && session_.m_detectThreadStopped, "both threads ended");
            Expect(video_.sourcesAlive == 0, "a camera goes with its session");
        }
    }

private:
    /// The other threads, while one waits.
    void OnSleep() override {
        if (inStep_) return; // one of them waits itself
        inStep_ = true;
        // Once the face is no longer marked a thread's whole body ends, too.
        const bool whole = session_.m_stage != COrvQuickViewDlg::kMarking && device_.height % 2 != 0;
        if (!session_.m_frameThreadStopped) whole ? session_.FrameThreadProc() : session_.FrameThreadStep();
        if (!session_.m_detectThreadStopped) whole ? session_.DetectThreadProc() : session_.DetectThreadStep();
        inStep_ = false;
    }

    void Serve(test::FakeWindow& window) {
        for (int32 steps = 0; steps < 48 && !choices_.AtEnd() && IsLive(); ++steps) {
            inStep_ = true;
            Step();
            inStep_ = false;
            if (choices_.Int(0, 3) == 3) fuzz::PlayOperator(choices_, window);
        }
        fuzz::PlayOperator(choices_, window);
        window.CloseBox(); // for an operator who has not decided
    }

    bool IsLive() const {
        return session_.m_capture != nullptr && session_.m_stage == COrvQuickViewDlg::kMarking &&
               !session_.m_frameThreadStopped && !session_.m_detectThreadStopped;
    }

    void Step() {
        switch (choices_.Int(0, 8)) {
        case 0:
        case 1:
            return SendPicture();
        case 2:
            return SendBytes();
        case 3:
        case 4:
            return Frame();
        case 5:
        case 6:
            return Detect();
        case 7:
            return choices_.Flag() ? session_.m_capture->Pause() : session_.m_capture->Run();
        default:
            return AskForFile();
        }
    }

    /// As the camera's thread: the newest frame, behind which the end of longer ones stays.
    void Send(const std::vector<uint8>& bytes) {
        if (!video_.Deliver(bytes.data(), static_cast<int32>(bytes.size()))) return;
        length_ = bytes.size();
        if (sent_.size() < bytes.size()) sent_.resize(bytes.size());
        std::copy(bytes.begin(), bytes.end(), sent_.begin());
    }

    void SendPicture() {
        test::Scene scene = test::BlankScene(device_.width, device_.height, choices_.Byte());
        for (int32 faces = choices_.Int(0, 2); faces > 0; --faces) {
            const int32 left = choices_.Int(-8, 90), bottom = choices_.Int(-8, 90);
            test::DrawFace(scene, left, bottom, choices_.Int(8, 70));
        }
        if (choices_.Flag()) scene.rows.resize(static_cast<std::size_t>(choices_.Int(0, 24000)), 7);
        Send(scene.rows);
    }

    void SendBytes() {
        const std::string bytes = choices_.Text(choices_.Byte() * 4U);
        if (choices_.Int(0, 7) == 7) {
            const uint8 none = 0;
            if (video_.Deliver(&none, choices_.Int(-300, 0))) length_ = 0;
        } else {
            Send(std::vector<uint8>(bytes.begin(), bytes.end()));
        }
    }

    bool IsRunning() const { return session_.m_capture->m_playState == kRunning; }

    void Frame() {
        const bool arrives = IsRunning();
        Expect(session_.FrameThreadStep(), "the frame thread goes on while the face is marked");
        if (!arrives) return;
        const Bitmap& source = session_.m_sourceBitmap;
        Expect(source.Width() == device_.width && source.Height() == device_.height, "a frame has the device's size");
        const std::size_t bytes = source.Header().biSizeImage, known = std::min(bytes, sent_.size());
        Expect(known == 0 || std::memcmp(source.Bits(), sent_.data(), known) == 0, "a frame comes as it was sent");
        for (std::size_t i = known; i < bytes; ++i) Expect(source.Bits()[i] == 0, "what never came is black");
    }

    void Detect() {
        bool held = false;
        const bool meddles = choices_.Int(0, 3) == 3;
        const test::DuringDetection meddling([&] {
            if (!meddles || held) return;
            held = true;
            SendPicture();
            if (choices_.Flag()) Frame();
            if (choices_.Flag()) session_.m_capture->Pause();
        });
        const std::vector<int32> before = Marks();
        const bool detects = IsRunning() && !session_.m_sourceBitmap.IsEmpty();
        Expect(session_.DetectThreadStep(), "the detection thread goes on while the face is marked");
        if (!detects) {
            Expect(Marks() == before, "where nothing is detected the marks stay");
            return;
        }
        Expect(!held || IsRunning() || Marks() == before, "a detection during which the camera is held is dropped");
        Expect(Marks() == std::vector<int32>{session_.m_anchorLeft, session_.m_anchorTop, session_.m_anchorRight,
                                             session_.m_anchorBottom},
               "marks and anchors agree after a detection");
        Expect(session_.m_missCount >= 0 && session_.m_missCount <= 48 * 3, "misses are counted one by one");
    }

    std::vector<int32> Marks() const {
        return {session_.m_markLeft, session_.m_markTop, session_.m_markRight, session_.m_markBottom};
    }

    void AskForFile() {
        std::vector<uint8> file;
        const bool there = session_.m_capture->GrabFrameFile(file);
        Expect(there == IsRunning(), "a frame as a file comes while the camera runs");
        if (!there) return;
        Expect(file.size() == 54 + length_, "it is as long as the frame that came last");
        Expect(length_ == 0 || std::memcmp(&file[54], sent_.data(), length_) == 0, "and has its bytes");
    }

    fuzz::Choices& choices_;
    test::FreshSession fresh_;
    test::FakeWindowSystem windows_;
    test::FakeVideo video_;
    COrvQuickViewDlg session_{windows_, video_};
    ImageSize device_{};
    std::vector<uint8> sent_; // what the capture holds
    std::size_t length_ = 0;  // of the newest frame
    bool inStep_ = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    fuzz::Choices choices(bytes, size);
    LiveRun(choices).Run();
    return 0;
}
