// What the operator feels: the rubber band, a turn and a step of the tolerance on a photograph of 12
// megapixels, as the session serves them. The window is one that shows nothing: it takes the preview's
// pictures and copies them.
#include "actions/action_settings.h"
#include "bench/photo.h"
#include "bench/quiet_window.h"
#include "capture/none/no_video.h"
#include "image/bitmap.h"
#include "orvane/orvane.h"
#include "session/quick_view_dlg.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace orvane::bench {
namespace {

/// Plays the operator while the window is open.
using Operator = std::function<void()>;

class PlayedWindow final : public QuietWindow {
public:
    PlayedWindow(WindowEvents& events, const Operator& play) : events_(events), play_(play) {}

    bool DoModal() override {
        events_.OnInitDialog();
        play_();
        events_.OnCancel();
        return true;
    }
    void SetPreview(PictureView picture) override {
        preview_.assign(picture.bits, picture.bits + std::ptrdiff_t{BitmapRowBytes(picture.width)} * picture.height);
        ++pictures;
    }
    void Post(WindowMessage message) override {
        // A toolkit would answer later; the opening animation would never end.
        if (message == WindowMessage::previewBitmap) events_.OnMessage(message);
    }

    int64 pictures = 0; // that the preview showed so far

private:
    WindowEvents& events_;
    const Operator& play_;
    std::vector<uint8> preview_;
};

class PlayedWindows final : public QuietWindows {
public:
    QuickViewWindow* CreateQuickView(WindowEvents& events, void*) override {
        return window = new PlayedWindow(events, play);
    }

    Operator play;
    PlayedWindow* window = nullptr;
};

/// A session on a photograph of 4000 by 3000 with these actions, its face marked by hand in the middle and a
/// quarter of the picture high. `step` is one thing that the operator does; it must change the preview.
template <typename Prepare, typename Step>
void RunSession(benchmark::State& state, const std::vector<int32>& actions, Prepare prepare, Step step) {
    orv_Handle dib = PackedPhoto({4000, 3000});
    orv_InitDLL();
    for (const int32 action : actions) orv_EnableAction(action, 1);
    PlayedWindows windows;
    NoVideo video;
    COrvQuickViewDlg session(windows, video);
    session.m_previewMaxWidth = session.m_previewMaxHeight = 400;
    int64 steps = 0, pictures = 0;
    windows.play = [&] {
        const int32 x = kPreviewLeft + 200, y = kPreviewTop + 150;
        session.OnLButtonDown(x - 37, y - 37);
        session.OnLButtonUp(x + 38, y + 38);
        prepare(session);
        const int64 before = windows.window->pictures;
        for (auto _ : state) step(session, static_cast<int32>(steps++));
        pictures = windows.window->pictures - before;
    };
    const int32 result = session.DetectFacePicture(dib);
    state.counters["work_width"] = session.m_workWidth;
    if (result != ORV_CANCELLED || steps == 0 || pictures != steps) state.SkipWithError("a step left the preview");
    orv_ReleaseDLL();
    orv_BlockFree(dib);
}

void RubberBand(benchmark::State& state) {
    const auto firstCorner = [](COrvQuickViewDlg& session) { session.OnLButtonDown(60, 60); };
    RunSession(state, {ORV_CROP}, firstCorner,
               [](COrvQuickViewDlg& session, int32 step) { session.OnMouseMove(100 + step % 200, 120 + step % 150); });
}

void PressOk(COrvQuickViewDlg& session) { session.OnBnClickedOk(); }

/// With the crop (1) or without it (0), by turns as a tilted head needs them.
void SetRotation(benchmark::State& state) {
    std::vector<int32> actions{ORV_ROTATE};
    if (state.range(0) != 0) actions.push_back(ORV_CROP);
    RunSession(state, actions, PressOk,
               [](COrvQuickViewDlg& session, int32 step) { session.SetRotation(1 + step % 20); });
}

/// All actions, with the crop (1) or without it (0).
void ToleranceStep(benchmark::State& state) {
    std::vector<int32> actions{ORV_REMOVE_BACKGROUND, ORV_CORRECT_COLOUR};
    if (state.range(0) != 0) actions.push_back(ORV_CROP);
    RunSession(state, actions, PressOk,
               [](COrvQuickViewDlg& session, int32 step) { session.SetTolerance(30 + step % 20); });
}

BENCHMARK(RubberBand)->Unit(benchmark::kMillisecond);
BENCHMARK(SetRotation)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK(ToleranceStep)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orvane::bench
