// The scan split into its steps, for a photograph with a face and a pattern without one, and the time that its bytes
// would take at the speed of memory.
#include "bench/beside_memcpy.h"
#include "bench/photo.h"
#include "detect/candidates.h"
#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "detect/fused_scan.h"
#include "image/result_codes.h"
#include "image/session_images.h"
#include "orvane/orvane.h"
#include "primitives/primitives.h"
#include "primitives/trunc.h"

#include <array>
#include <bit>
#include <chrono>

#if defined(__i386__) || defined(__x86_64__)
#include <x86intrin.h>
#endif

namespace orvane::bench {
namespace {

/// Finer than the clock of the system, which takes longer to read than some steps.
uint64 Ticks() {
#if defined(__i386__) || defined(__x86_64__)
    return __rdtsc();
#else
    return static_cast<uint64>(std::chrono::steady_clock::now().time_since_epoch().count());
#endif
}

enum Step { kGrey, kSample, kIntegral, kGradients, kRidges, kFollow, kNorms, kStages, kGroups, kHarvest, kStepCount };
constexpr const char* kStepNames[kStepCount] = {"a_grey_ms",   "b_sample_ms", "c_integral_ms", "d_gradients_ms",
                                                "e_ridges_ms", "f_follow_ms", "g_norms_ms",    "h_stages_ms",
                                                "i_groups_ms", "j_harvest_ms"};

using StepTicks = std::array<uint64, kStepCount>;
StepTicks g_ticks;
uint64 g_tickCost; // of reading the ticks twice

/// Adds the time of a call to a step.
template <typename Call>
void Timed(Step step, Call&& call) {
    const uint64 start = Ticks();
    call();
    const uint64 taken = Ticks() - start;
    g_ticks[step] += taken > g_tickCost ? taken - g_tickCost : 0;
}

void FindTickCost() {
    g_tickCost = ~uint64{0};
    for (int i = 0; i < 1000; ++i) {
        const uint64 start = Ticks();
        g_tickCost = std::min(g_tickCost, Ticks() - start);
    }
}

/// The kernels in use, each with a clock around it.
ScanKernels TimedKernels() {
    ScanKernels timed = CurrentScanKernels();
    timed.sample = [](auto... a) { Timed(kSample, [=] { CurrentScanKernels().sample(a...); }); };
    if (timed.samplePieces != nullptr) {
        timed.samplePieces = [](const uint8* from, const SamplePieces& pieces, uint8* row) {
            Timed(kSample, [&] { CurrentScanKernels().samplePieces(from, pieces, row); });
        };
    }
    timed.integral = [](const uint8* pixels, int32 width, const SumRows& rows) {
        Timed(kIntegral, [&] { CurrentScanKernels().integral(pixels, width, rows); });
    };
    timed.gradients = [](const EdgeRows& rows, int32 low, const GradientRow& out) {
        Timed(kGradients, [&] { CurrentScanKernels().gradients(rows, low, out); });
    };
    timed.ridges = [](const int16* above, const GradientRow& here, const int16* below, int32 width, int32 high,
                      uint64* ridges, uint64* strong) {
        Timed(kRidges, [&] { CurrentScanKernels().ridges(above, here, below, width, high, ridges, strong); });
    };
    timed.norms = [](const InnerRectRows& rows, int32 count, float* norms) {
        Timed(kNorms, [&] { CurrentScanKernels().norms(rows, count, norms); });
    };
    timed.stage = [](const ResolvedStage& stage, const float* window, const float* norms, float* sums,
                     const int32* starts, int32 count, GroupVerdict* verdicts) {
        Timed(kStages, [&] { CurrentScanKernels().stage(stage, window, norms, sums, starts, count, verdicts); });
    };
    timed.shortStage = [](const ResolvedStage& stage, const uint16* window, const float* norms, float* sums,
                          const int32* starts, int32 count, GroupVerdict* verdicts) {
        Timed(kStages, [&] { CurrentScanKernels().shortStage(stage, window, norms, sums, starts, count, verdicts); });
    };
    return timed;
}

uint64 TicksOf(Step first, Step last) {
    uint64 sum = 0;
    for (int step = first; step <= last; ++step) sum += g_ticks[static_cast<std::size_t>(step)];
    return sum;
}

/// One pass, scale by scale as ScanScales has them. Adds the bytes that it moves at the least.
void Pass(const ScanKernels& kernels, const ImageBuffer& picture, float scaleFactor, CandidateList& hits,
          int64& moved) {
    const int32 width = picture.width, height = picture.height;
    ImageBuffer grey;
    Timed(kGrey, [&] {
        grey.Create(width, height, 1, kDepth8u, 0);
        primRGBToGray_8u_C3C1(picture.data, picture.Step(), grey.data, grey.Step(), picture.Size());
    });
    moved += int64{4} * width * height; // the picture read, its grey written
    const int32 side = g_classifier.windowWidth;
    const auto minFace = TruncToInt32(width * static_cast<double>(width < 500 ? 0.05F : 0.07F));
    const auto maxFace = TruncToInt32(width * static_cast<double>(0.95F) + 0.5);
    ScaleRows rows(kernels, grey);
    WindowCascade cascade(kernels, g_classifier);
    bool reserved = false;
    for (float scale = InitialScale(width, minFace, side);; scale *= scaleFactor) {
        const float inverse = 1.0F / scale;
        const ImageSize scaled{TruncToInt32(inverse * static_cast<float>(width)),
                               TruncToInt32(inverse * static_cast<float>(height))};
        if (scaled.width <= side + 5 || scaled.height <= side + 5 || maxFace <= side * static_cast<double>(scale))
            break;
        if (!reserved && !(rows.Reserve(scaled) && cascade.Reserve(rows.Stride(), scaled.height))) return;
        reserved = true;
        const ImageSize positions{scaled.width - g_classifier.maxFeatureWidth + 1,
                                  scaled.height - g_classifier.maxFeatureHeight + 1};
        const uint64 rowSteps = TicksOf(kSample, kRidges), windowSteps = TicksOf(kNorms, kStages);
        Timed(kFollow, [&] { rows.Make(scaled, inverse, positions); });
        g_ticks[kFollow] -= TicksOf(kSample, kRidges) - rowSteps;
        Timed(kGroups, [&] { cascade.Decide(rows, positions.height); });
        g_ticks[kGroups] -= TicksOf(kNorms, kStages) - windowSteps;
        Timed(kHarvest, [&] {
            for (int32 y = 0; y < positions.height; ++y) {
                for (int32 word = 0; word < rows.Words(); ++word) {
                    for (uint64 rest = rows.EdgeRow(y)[word]; rest != 0; rest &= rest - 1)
                        hits.Place(CandidateOfWindow(64 * word + std::countr_zero(rest), y, side, scale));
                }
            }
        });
        moved += int64{17} * scaled.width * scaled.height; // a sample read, two sums written and read
    }
}

/// A detection with a clock in it: 0 the photograph, 1 a pattern without a face; normal 0, quick 1.
void Scan(benchmark::State& state) {
    orv_InitDLL();
    const ImageSize size{static_cast<int32>(state.range(1)), static_cast<int32>(state.range(2))};
    state.range(0) == 0 ? MakePhoto(size, g_sourceImage) : MakeFaceFree(size, g_sourceImage);
    const bool quick = state.range(3) != 0;
    const int32 result = RunDetection(quick);
    FindTickCost();
    const ScanKernels kernels = TimedKernels();
    int64 moved = 0;
    // The least of all runs, step by step, since others may use the processor as well.
    StepTicks least;
    least.fill(~uint64{0});
    for (auto _ : state) {
        g_ticks.fill(0);
        CandidateList hits;
        Pass(kernels, g_sourceImage, quick ? 1.09F : 1.05F, hits, moved);
        if (!quick && result == kNoFace) Pass(kernels, g_sourceImage, 1.02F, hits, moved);
        for (std::size_t step = 0; step < kStepCount; ++step) least[step] = std::min(least[step], g_ticks[step]);
    }
    const auto n = static_cast<double>(state.iterations());
    // Ticks are told in milliseconds by an unhurried stretch of them.
    const auto began = std::chrono::steady_clock::now();
    const uint64 firstTick = Ticks();
    while (std::chrono::steady_clock::now() - began < std::chrono::milliseconds(20)) {
    }
    const double perMs = static_cast<double>(Ticks() - firstTick) / 20.0;
    double all = 0.0;
    for (std::size_t step = 0; step < kStepCount; ++step) {
        const double ms = static_cast<double>(least[step]) / perMs;
        state.counters[kStepNames[step]] = ms;
        all += ms;
    }
    state.counters["k_all_ms"] = all;
    const std::size_t bytes =
        std::size_t{3} * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
    state.counters["l_floor_ms"] =
        1e3 * MemcpySeconds(bytes) * static_cast<double>(moved) / n / (2.0 * static_cast<double>(bytes));
    state.counters["result"] = result;
    if (result < 0) state.SkipWithError("the detection failed");
    orv_ReleaseDLL();
}

void Sizes(benchmark::internal::Benchmark* scan) {
    for (const int picture : {0, 1}) {
        for (const int quick : {0, 1}) {
            scan->Args({picture, 640, 480, quick})
                ->Args({picture, 1600, 1200, quick})
                ->Args({picture, 4000, 3000, quick});
        }
    }
}

BENCHMARK(Scan)->ArgNames({"no_face", "w", "h", "quick"})->Apply(Sizes)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orvane::bench
