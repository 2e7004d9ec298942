// What the steps of a session without a window cost, with the crop and an output of 480 by 860, and how much memory
// the library takes at its peak: for the photograph, and for a pattern in which there is no face.
#include "bench/beside_memcpy.h"
#include "bench/photo.h"
#include "detect/scan_observer.h"
#include "image/packed_dib.h"
#include "image/session_images.h"
#include "session/session_state.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <limits>
#include <malloc.h>

namespace orvane::bench {
namespace {

/// When the passes of a detection began and ended, in processor seconds of this thread.
class Passes final : public ScanObserver {
public:
    Passes() { g_scanObserver = this; }
    ~Passes() override { g_scanObserver = nullptr; }
    Passes(const Passes&) = delete;
    Passes& operator=(const Passes&) = delete;

    void OnPass() override {
        if (begin == 0) begin = ThreadSeconds();
    }
    bool NeedsSteps() const override { return false; }
    void OnHits(const CandidateList&) override { end = ThreadSeconds(); }

    double begin = 0, end = 0;
};

/// Processor seconds of each step of a session.
struct Split {
    double copyIn = 0, workPicture = 0, grey = 0, scan = 0, crop = 0, scaling = 0, copyOut = 0;
    int32 result = 0;

    double Sum() const { return copyIn + workPicture + grey + scan + crop + scaling + copyOut; }
};

/// One session, taken step by step as the exports take it.
Split RunSplit(orv_Handle dib) {
    COrvQuickViewDlg& session = *g_dialog;
    Split split;
    double last = ThreadSeconds();
    const auto lap = [&last] {
        const double now = ThreadSeconds();
        const double passed = now - last;
        last = now;
        return passed;
    };
    session.m_sourceBlock.emplace(dib);
    split.result = BitmapOverBlock(*session.m_sourceBlock, session.m_sourceBitmap);
    split.copyIn = lap();
    if (split.result != kSuccess) return split;
    {
        const Passes passes;
        split.result = session.BeginSession();
        split.grey = passes.begin - last;
        split.scan = passes.end - passes.begin;
        last = passes.end;
    }
    split.workPicture = lap();
    if (split.result == kSuccess) {
        session.ProduceOutput(session.m_tolerance, true, [&](int32 slot, const ImageBuffer&) {
            (slot == kSlotCrop ? split.crop : split.scaling) += lap();
        });
    }
    orv_Handle out = nullptr;
    if (orv_GetOutputImage(&out) == 0) orv_BlockFree(out);
    session.EndSession();
    split.copyOut = lap();
    return split;
}

/// A figure of this process in kilobytes.
int64 StatusOf(const char* name) {
    int64 kilobytes = 0;
    std::FILE* status = std::fopen("/proc/self/status", "r");
    if (status == nullptr) return 0;
    char line[128];
    while (std::fgets(line, sizeof line, status) != nullptr) {
        if (std::strncmp(line, name, std::strlen(name)) != 0) continue;
        long long value = 0;
        if (std::sscanf(line + std::strlen(name), ": %lld", &value) == 1) kilobytes = value;
    }
    std::fclose(status);
    return kilobytes;
}

/// Bytes by which the process grows during one session: what the library takes beside the host's block.
int64 PeakBytes(orv_Handle dib) {
    // What earlier sessions left must not serve this one unseen.
    for (ImageBuffer* image : {&g_sourceImage, &g_workImage, &g_maskImage, &g_colourStageImage, &g_colourStageMask}) {
        image->Reset();
    }
    g_dialog->m_resultBitmap.Delete();
    malloc_trim(0);
    std::FILE* peak = std::fopen("/proc/self/clear_refs", "w");
    if (peak == nullptr) return 0;
    std::fputs("5", peak); // it begins anew
    std::fclose(peak);
    const int64 before = StatusOf("VmRSS");
    orv_DetectFacePicture(dib);
    orv_Handle out = nullptr;
    if (orv_GetOutputImage(&out) == 0) orv_BlockFree(out);
    return (StatusOf("VmHWM") - before) * 1024;
}

/// The cheapest session, whose steps are reported; the machine may be busy.
void RunSessions(benchmark::State& state, const ImageBuffer& picture) {
    orv_Handle dib = Packed(picture);
    orv_InitDLL();
    orv_SetVisibleMode(0);
    orv_EnableAction(ORV_CROP, 1);
    const int64 peak = PeakBytes(dib);
    Split best;
    double least = std::numeric_limits<double>::max();
    for (auto _ : state) {
        const Split split = RunSplit(dib);
        if (split.Sum() < least) {
            least = split.Sum();
            best = split;
        }
    }
    const auto bytes = static_cast<double>(picture.Step()) * picture.height;
    state.counters["a_copy_in_ms"] = best.copyIn * 1e3;
    state.counters["b_grey_ms"] = best.grey * 1e3;
    state.counters["c_scan_ms"] = best.scan * 1e3;
    state.counters["d_work_picture_ms"] = best.workPicture * 1e3;
    state.counters["e_crop_ms"] = best.crop * 1e3;
    state.counters["f_output_scaling_ms"] = best.scaling * 1e3;
    state.counters["g_copy_out_ms"] = best.copyOut * 1e3;
    state.counters["h_all_ms"] = least * 1e3;
    state.counters["memory_MB/s"] = 2 * bytes * 1e-6 / MemcpySeconds(static_cast<std::size_t>(bytes));
    state.counters["peak_MB"] = static_cast<double>(peak) * 1e-6;
    state.counters["peak_pictures"] = static_cast<double>(peak) / bytes;
    state.counters["result"] = best.result;
    if (best.result < 0 || peak <= 0) state.SkipWithError("the session failed");
    orv_ReleaseDLL();
    orv_BlockFree(dib);
}

ImageSize SizeOf(const benchmark::State& state) {
    return {static_cast<int32>(state.range(0)), static_cast<int32>(state.range(1))};
}

void SplitPortrait(benchmark::State& state) {
    ImageBuffer picture;
    MakePhoto(SizeOf(state), picture);
    RunSessions(state, picture);
}

void SplitFaceFree(benchmark::State& state) {
    ImageBuffer picture;
    MakeFaceFree(SizeOf(state), picture);
    RunSessions(state, picture);
}

BENCHMARK(SplitPortrait)->Args({640, 480})->Args({1600, 1200})->Args({4000, 3000})->Unit(benchmark::kMillisecond);
BENCHMARK(SplitFaceFree)->Args({640, 480})->Args({1600, 1200})->Args({4000, 3000})->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orvane::bench
