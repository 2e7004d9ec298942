// The whole session, with the crop alone through the exports and with all actions split by slot, and the
// detector alone, at three sizes of photograph.
#include "bench/photo.h"
#include "detect/candidates.h"
#include "detect/cascade_detector.h"
#include "detect/detection_memory.h"
#include "image/bitmap.h"
#include "image/result_codes.h"
#include "image/session_images.h"
#include "orvane/orvane.h"
#include "session/session_state.h"
#include "session/stage_clock.h"

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cstring>

namespace orvane::bench {
namespace {

ImageSize SizeOf(const benchmark::State& state) {
    return {static_cast<int32>(state.range(0)), static_cast<int32>(state.range(1))};
}

/// Milliseconds of each stage of the sessions so far.
class StageSums {
public:
    /// Adds the session that just ended.
    void Add() {
        sum_.scale += g_stageTimes.scale;
        sum_.detect += g_stageTimes.detect;
        sum_.crop += g_stageTimes.crop;
        sum_.output += g_stageTimes.output;
    }

    /// As counters of one session, whose names keep the order of the stages.
    void Report(benchmark::State& state) const {
        const auto n = static_cast<double>(state.iterations());
        state.counters["a_scale_ms"] = sum_.scale / n;
        state.counters["b_detect_ms"] = sum_.detect / n;
        state.counters["c_confirm_ms"] = sum_.crop / n;
        state.counters["d_output_ms"] = sum_.output / n;
    }

private:
    StageTimes sum_;
};

/// Crop and output of 480 by 860, without a window. `result` is the session's: 0 a portrait was made,
/// 10 no face was found in the photograph.
void Session(benchmark::State& state) {
    orv_Handle dib = PackedPhoto(SizeOf(state));
    orv_InitDLL();
    orv_SetVisibleMode(0);
    orv_EnableAction(ORV_CROP, 1);
    StageSums sums;
    int32_t result = 0;
    for (auto _ : state) {
        result = orv_DetectFacePicture(dib);
        orv_Handle out = nullptr;
        if (orv_GetOutputImage(&out) == 0) orv_BlockFree(out);
        sums.Add();
    }
    sums.Report(state);
    state.counters["result"] = result;
    if (result < 0) state.SkipWithError("the session failed");
    orv_ReleaseDLL();
    orv_BlockFree(dib);
}

/// Hands a photo in, as the door for packed bitmaps does.
bool TakePhoto(const ImageBuffer& photo) {
    COrvQuickViewDlg& session = *g_dialog;
    g_stageTimes = {};
    session.m_sourceMode = 1;
    if (!session.m_sourceBitmap.Create(photo.width, photo.height)) return false;
    std::memcpy(session.m_sourceBitmap.Bits(), photo.data, session.m_sourceBitmap.Header().biSizeImage);
    session.ReadBitmapHeader(session.m_sourceBitmap);
    session.ComputeWorkSize();
    return true;
}

/// Milliseconds of each slot of a final run.
class SlotTimes {
public:
    /// A final run of the session's present state.
    int32 ProduceOutput() {
        last_ = std::chrono::steady_clock::now();
        confirmation_ = true;
        return g_dialog->ProduceOutput(g_dialog->m_tolerance, true, [this](int32 slot, const ImageBuffer&) {
            const auto now = std::chrono::steady_clock::now();
            double& sum = sums[static_cast<std::size_t>(slot)];
            sum += std::chrono::duration<double, std::milli>(now - last_).count();
            if (confirmation_) sum -= g_stageTimes.crop; // which came before the first slot
            confirmation_ = false;
            last_ = now;
        });
    }

    std::array<double, kActionCount> sums{};

private:
    std::chrono::steady_clock::time_point last_;
    bool confirmation_ = true;
};

/// All four actions with a turn by 5 degrees, and the output of 480 by 860. Where the detector finds no face
/// (`result` 10) one is set in the middle, so that every slot has its work.
void SessionAllActions(benchmark::State& state) {
    ImageBuffer photo;
    MakePhoto(SizeOf(state), photo);
    orv_InitDLL();
    orv_SetVisibleMode(0);
    orv_SetSizeOutputImage(480, 860);
    for (const int32 slot : {ORV_CROP, ORV_REMOVE_BACKGROUND, ORV_CORRECT_COLOUR, ORV_ROTATE})
        orv_EnableAction(slot, 1);
    StageSums sums;
    SlotTimes slots;
    int32 result = kOutOfMemory;
    bool good = true;
    for (auto _ : state) {
        good = good && TakePhoto(photo);
        result = g_dialog->BeginSession();
        if (result == kNoFace) {
            const ImageSize work = g_sourceImage.Size();
            SetFaceRect(work.width * 3 / 8, work.height * 3 / 8, work.height / 4, work.height / 4);
        }
        g_dialog->m_rotation = 5;
        good = good && slots.ProduceOutput() == kSuccess;
        g_dialog->EndSession();
        sums.Add();
    }
    sums.Report(state);
    const auto n = static_cast<double>(state.iterations());
    state.counters["slot0_crop_ms"] = slots.sums[kSlotCrop] / n;
    state.counters["slot1_background_ms"] = slots.sums[kSlotBackground] / n;
    state.counters["slot2_colour_ms"] = slots.sums[kSlotColour] / n;
    state.counters["slot3_rotation_ms"] = slots.sums[kSlotRotation] / n;
    state.counters["slot5_scaling_ms"] = slots.sums[kSlotOutputScaling] / n;
    state.counters["result"] = result;
    if (!good || slots.sums[kSlotOutputScaling] <= 0) state.SkipWithError("the session failed");
    orv_ReleaseDLL();
}

/// The detector alone, as a session calls it, in normal (0) and quick (1) mode.
void Detector(benchmark::State& state) {
    orv_InitDLL();
    MakePhoto(SizeOf(state), g_sourceImage);
    const bool quick = state.range(2) != 0;
    int32 result = 0;
    DetectionMemory memory;
    for (auto _ : state) {
        result = FindFace(quick, memory);
        memory.grey.Reset();
    }
    state.counters["result"] = result;
    if (result < 0) state.SkipWithError("the detection failed");
    orv_ReleaseDLL();
}

BENCHMARK(Session)->Args({640, 480})->Args({1600, 1200})->Args({4000, 3000})->Unit(benchmark::kMillisecond);
BENCHMARK(SessionAllActions)->Args({640, 480})->Args({1600, 1200})->Args({4000, 3000})->Unit(benchmark::kMillisecond);
BENCHMARK(Detector)
    ->Args({640, 480, 0})
    ->Args({1600, 1200, 0})
    ->Args({4000, 3000, 0})
    ->Args({640, 480, 1})
    ->Args({1600, 1200, 1})
    ->Args({4000, 3000, 1})
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orvane::bench
