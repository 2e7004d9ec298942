// A live session as the operator sees it: how many pictures a second the preview shows and how old they are, while
// the detection runs. The camera delivers the photograph at 30 frames a second; the window shows nothing, as in the
// other benchmarks. These are whole sessions against the clock: a busy machine shows.
#include "bench/photo.h"
#include "bench/quiet_window.h"
#include "capture/video_source.h"
#include "detect/scan_observer.h"
#include "image/bitmap.h"
#include "orvane/orvane.h"
#include "session/quick_view_dlg.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstring>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kFramePause = std::chrono::microseconds(33'333);
constexpr auto kSession = std::chrono::seconds(5);
constexpr int32 kNumberSide = 16; // pixels of the square at the upper left that carries the frame's number

/// A camera that writes each frame's number into it, and remembers when it delivered it.
class NumberedCamera final : public VideoSource {
public:
    NumberedCamera(ImageSize size, std::vector<Clock::time_point>& times) : size_(size), times_(times) {
        MakePhoto(size, photo_);
    }
    ~NumberedCamera() override { Close(); }
    NumberedCamera(const NumberedCamera&) = delete;
    NumberedCamera& operator=(const NumberedCamera&) = delete;

    int32 EnumerateDevices() override { return 1; }
    const wchar_t* Text(int32, DeviceText) override { return nullptr; }
    int32 Formats(int32, VideoFormat*, int32) override { return 0; }
    bool Open(int32, ImageSize* size) override {
        Close();
        *size = size_;
        return true;
    }
    bool ConfigureWindow(std::intptr_t, FrameSink& sink) override {
        sink_ = &sink;
        return true;
    }
    bool Run() override {
        if (!thread_.joinable()) {
            ended_ = false;
            thread_ = std::thread([this] { Deliver(); });
        }
        return true;
    }
    bool Pause() override { return false; }
    void Close() override {
        ended_ = true;
        if (thread_.joinable()) thread_.join();
    }

private:
    void Deliver() {
        auto due = Clock::now();
        for (int32 number = 0; !ended_ && number < static_cast<int32>(times_.size()); ++number) {
            WriteNumber(number);
            times_[static_cast<std::size_t>(number)] = Clock::now();
            sink_->BufferCB(0, photo_.data, photo_.Step() * photo_.height);
            due += kFramePause;
            std::this_thread::sleep_until(due);
        }
    }
    void WriteNumber(int32 number) {
        for (int32 y = photo_.height - kNumberSide; y < photo_.height; ++y) {
            uint8* pixel = RowAt(photo_.data, photo_.Step(), y);
            for (int32 x = 0; x < kNumberSide; ++x, pixel += 3) {
                for (int32 c = 0; c < 3; ++c) pixel[c] = static_cast<uint8>(number >> (8 * c));
            }
        }
    }

    ImageSize size_;
    std::vector<Clock::time_point>& times_; // when each frame was delivered
    ImageBuffer photo_;
    FrameSink* sink_ = nullptr;
    std::thread thread_;
    std::atomic<bool> ended_ = true;
};

class NumberedVideo final : public VideoSystem {
public:
    explicit NumberedVideo(ImageSize size) : size_(size) {}
    VideoSource* CreateVideoSource() override { return new NumberedCamera(size_, times); }

    std::vector<Clock::time_point> times{std::size_t{1000}};

private:
    ImageSize size_;
};

/// What the preview showed in a session.
struct VideoFigures {
    std::vector<double> ages; // of each picture: milliseconds since the camera delivered its frame
    int64 fresh = 0;          // pictures of another frame than the one before
    Clock::time_point first, last;
};

/// Serves its messages for some seconds, then cancels.
class VideoWindow final : public QuietWindow {
public:
    VideoWindow(WindowEvents& events, const NumberedVideo& video, VideoFigures& figures)
        : events_(events), video_(video), figures_(figures) {}

    bool DoModal() override {
        events_.OnInitDialog();
        events_.OnShowWindow();
        const auto end = Clock::now() + kSession;
        std::unique_lock lock(mutex_);
        while (Clock::now() < end) {
            if (!posted_.wait_until(lock, end, [this] { return !messages_.empty(); })) break;
            const WindowMessage message = messages_.front();
            messages_.pop_front();
            lock.unlock();
            events_.OnMessage(message);
            lock.lock();
        }
        lock.unlock();
        events_.OnCancel();
        return true;
    }
    void SetPreview(PictureView picture) override {
        const uint8* corner = picture.bits + std::ptrdiff_t{BitmapRowBytes(picture.width)} * (picture.height - 2) + 3;
        const int32 number = corner[0] | corner[1] << 8 | corner[2] << 16;
        const auto now = Clock::now();
        if (number >= static_cast<int32>(video_.times.size())) return;
        if (figures_.ages.empty()) figures_.first = now;
        figures_.last = now;
        const auto age = now - video_.times[static_cast<std::size_t>(number)];
        figures_.ages.push_back(std::chrono::duration<double, std::milli>(age).count());
        figures_.fresh += number != shown_ ? 1 : 0;
        shown_ = number;
    }
    void Post(WindowMessage message) override {
        const std::lock_guard lock(mutex_);
        messages_.push_back(message);
        posted_.notify_one();
    }

private:
    WindowEvents& events_;
    const NumberedVideo& video_;
    VideoFigures& figures_;
    std::mutex mutex_; // guards messages_
    std::condition_variable posted_;
    std::deque<WindowMessage> messages_;
    int32 shown_ = -1;
};

class VideoWindows final : public QuietWindows {
public:
    explicit VideoWindows(const NumberedVideo& video) : video_(video) {}
    QuickViewWindow* CreateQuickView(WindowEvents& events, void*) override {
        return new VideoWindow(events, video_, figures);
    }

    VideoFigures figures;

private:
    const NumberedVideo& video_;
};

/// Counts the rounds of the detection; a quick one is a single pass.
class Rounds final : public ScanObserver {
public:
    Rounds() { g_scanObserver = this; }
    ~Rounds() override { g_scanObserver = nullptr; }
    Rounds(const Rounds&) = delete;
    Rounds& operator=(const Rounds&) = delete;

    void OnPass() override { ++count; }

    std::atomic<int32> count = 0;
};

void LiveSession(benchmark::State& state) {
    for (auto _ : state) {
        orv_InitDLL();
        NumberedVideo video({static_cast<int32>(state.range(0)), static_cast<int32>(state.range(1))});
        VideoWindows windows(video);
        const Rounds rounds;
        COrvQuickViewDlg session(windows, video);
        session.m_previewMaxWidth = session.m_previewMaxHeight = 400;
        const int32 result = session.DetectFaceLive(0);
        orv_ReleaseDLL();
        VideoFigures& figures = windows.figures;
        if (result != ORV_CANCELLED || figures.ages.size() < 2) return state.SkipWithError("no video came");
        const double seconds = std::chrono::duration<double>(figures.last - figures.first).count();
        std::sort(figures.ages.begin(), figures.ages.end());
        state.counters["a_pictures_a_second"] = static_cast<double>(figures.ages.size() - 1) / seconds;
        state.counters["b_fresh_a_second"] = static_cast<double>(figures.fresh - 1) / seconds;
        state.counters["c_rounds_a_second"] = rounds.count / std::chrono::duration<double>(kSession).count();
        state.counters["d_age_ms_median"] = figures.ages[figures.ages.size() / 2];
        state.counters["e_age_ms_most"] = figures.ages.back();
    }
}

BENCHMARK(LiveSession)
    ->Args({640, 480})
    ->Args({1280, 960})
    ->Iterations(1)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orvane::bench
