// Each action of the pipeline alone, at three sizes of picture, beside a memcpy of its input. The face stands
// in the middle and is a quarter of the picture's height.
#include "actions/action_settings.h"
#include "actions/background.h"
#include "actions/colour_correction.h"
#include "actions/face_crop.h"
#include "actions/output_scaling.h"
#include "actions/rotation.h"
#include "bench/beside_memcpy.h"
#include "bench/photo.h"
#include "detect/candidates.h"
#include "image/result_codes.h"
#include "primitives/primitives.h"

#include <algorithm>

namespace orvane::bench {
namespace {

/// Benchmarks `action(source, destination)`, which returns whether it made a picture.
template <typename Action>
void RunAction(benchmark::State& state, Action action) {
    ImageBuffer source, destination;
    const ImageSize size{static_cast<int32>(state.range(0)), static_cast<int32>(state.range(1))};
    MakePhoto(size, source);
    SetOutputGeometry(480, 860);
    g_faceRecord = {size.width / 2, size.height / 2, size.height / 4, size.height / 4};
    bool made = true;
    RunBesideMemcpy(state, static_cast<std::size_t>(source.Step()) * static_cast<std::size_t>(source.height), [&] {
        destination.Reset(); // as each slot finds it
        made = action(source, destination) && made;
    });
    if (!made || destination.data == nullptr) state.SkipWithError("the action made no picture");
}

void Crop(benchmark::State& state) {
    RunAction(state, [](const ImageBuffer& from, ImageBuffer& to) { return ActionFaceCrop(from, to) == kSuccess; });
}

/// With the sizes and the tolerance of a session on this picture. Where nothing of the backdrop can be told
/// from the person, as in the pattern, the action ends early with a copy; `removed_%` tells.
void Background(benchmark::State& state) {
    ImageBuffer mask;
    RunAction(state, [&mask](const ImageBuffer& from, ImageBuffer& to) {
        return ActionRemoveBackground(from, to, mask, 40, from.width, from.height) == kSuccess;
    });
    int64 background = 0;
    for (int32 y = 0; mask.data != nullptr && y < mask.height; ++y) {
        const uint8* row = RowAt(mask.data, mask.Step(), y);
        background += std::count(row, row + mask.width, uint8{0});
    }
    state.counters["removed_%"] =
        100.0 * static_cast<double>(background) / static_cast<double>(state.range(0) * state.range(1));
}

void ColourCorrection(benchmark::State& state) {
    RunAction(state,
              [](const ImageBuffer& from, ImageBuffer& to) { return ActionColourCorrection(from, to) == kSuccess; });
}

/// By the degrees of the third argument.
void Rotation(benchmark::State& state) {
    const auto angle = static_cast<int32>(state.range(2));
    RunAction(state, [angle](const ImageBuffer& from, ImageBuffer& to) {
        RotateImage(from, to, angle);
        return to.data != nullptr;
    });
}

/// To 480 by 860; one of the two is enlarged, and set back for each call.
void OutputScaling(benchmark::State& state) {
    RunAction(state, [](const ImageBuffer& from, ImageBuffer& to) {
        SetOutputGeometry(480, 860);
        return ActionOutputScaling(from, to) == kSuccess;
    });
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    for (const ImageSize size : {ImageSize{640, 480}, ImageSize{1600, 1200}, ImageSize{4000, 3000}}) {
        benchmark->Args({size.width, size.height});
    }
    benchmark->Unit(benchmark::kMillisecond);
}

void SizesAndAngles(benchmark::internal::Benchmark* benchmark) {
    for (const int32 angle : {90, 180, 5, 37}) {
        for (const ImageSize size : {ImageSize{640, 480}, ImageSize{1600, 1200}, ImageSize{4000, 3000}}) {
            benchmark->Args({size.width, size.height, angle});
        }
    }
    benchmark->Unit(benchmark::kMillisecond);
}

BENCHMARK(Crop)->Apply(Sizes);
BENCHMARK(Background)->Apply(Sizes);
BENCHMARK(ColourCorrection)->Apply(Sizes);
BENCHMARK(Rotation)->Apply(SizesAndAngles);
BENCHMARK(OutputScaling)->Apply(Sizes);

} // namespace
} // namespace orvane::bench
