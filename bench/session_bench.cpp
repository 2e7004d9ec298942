// The whole session through the exports, and the detector alone, at three sizes of photograph.
#include "api/session_state.h"
#include "api/stage_clock.h"
#include "bench/photo.h"
#include "detect/cascade_detector.h"
#include "image/bitmap.h"
#include "image/session_images.h"
#include "orvane/orvane.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace orvane::bench {
namespace {

/// A photograph as a packed bitmap.
orv_Handle PackedPhoto(ImageSize size) {
    ImageBuffer photo;
    MakePhoto(size, photo);
    const BitmapHeader header = OutgoingHeader(size.width, size.height);
    orv_Handle dib = orv_BlockAlloc(sizeof header + header.biSizeImage);
    auto* bytes = static_cast<uint8*>(orv_BlockLock(dib));
    std::memcpy(bytes, &header, sizeof header);
    std::memcpy(bytes + sizeof header, photo.data, header.biSizeImage);
    orv_BlockUnlock(dib);
    return dib;
}

ImageSize SizeOf(const benchmark::State& state) {
    return {static_cast<int32>(state.range(0)), static_cast<int32>(state.range(1))};
}

/// Crop and output of 480 by 860, without a window. `result` is the session's: 0 a portrait was made,
/// 10 no face was found in the photograph.
void Session(benchmark::State& state) {
    orv_Handle dib = PackedPhoto(SizeOf(state));
    orv_InitDLL();
    orv_SetVisibleMode(0);
    orv_EnableAction(ORV_CROP, 1);
    StageTimes sum;
    int32_t result = 0;
    for (auto _ : state) {
        result = orv_DetectFacePicture(dib);
        orv_Handle out = nullptr;
        if (orv_GetOutputImage(&out) == 0) orv_BlockFree(out);
        sum.scale += g_stageTimes.scale;
        sum.detect += g_stageTimes.detect;
        sum.crop += g_stageTimes.crop;
        sum.output += g_stageTimes.output;
    }
    const auto n = static_cast<double>(state.iterations());
    state.counters["scale_ms"] = sum.scale / n;
    state.counters["detect_ms"] = sum.detect / n;
    state.counters["crop_ms"] = sum.crop / n;
    state.counters["output_ms"] = sum.output / n;
    state.counters["result"] = result;
    if (result < 0) state.SkipWithError("the session failed");
    orv_ReleaseDLL();
    orv_BlockFree(dib);
}

/// RunDetection alone, in normal (0) and quick (1) mode.
void Detector(benchmark::State& state) {
    orv_InitDLL();
    MakePhoto(SizeOf(state), g_sourceImage);
    const bool quick = state.range(2) != 0;
    int32 result = 0;
    for (auto _ : state) result = RunDetection(quick);
    state.counters["result"] = result;
    if (result < 0) state.SkipWithError("the detection failed");
    orv_ReleaseDLL();
}

BENCHMARK(Session)->Args({640, 480})->Args({1600, 1200})->Args({4000, 3000})->Unit(benchmark::kMillisecond);
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
