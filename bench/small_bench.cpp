// The primitives that walk no picture: storage, and questions about sizes and turns. Time a call.
#include "bench/beside_memcpy.h"
#include "primitives/primitives.h"

namespace orvane::bench {
namespace {

constexpr ImageSize kScale{349, 262}; // the largest scale of the scan of a 640 by 480 picture

void MallocAndFree(benchmark::State& state) {
    for (auto _ : state) {
        void* p = primMalloc(100000);
        benchmark::DoNotOptimize(p);
        primFree(p);
    }
}
BENCHMARK(MallocAndFree)->Name("primMalloc and primFree (100,000 bytes)");

/// The storage comes zeroed, which is nearly all of the time.
template <auto& Alloc>
void AllocImage(benchmark::State& state) {
    int32 step = 0;
    for (auto _ : state) {
        auto* p = Alloc(kScale.width, kScale.height, &step);
        benchmark::DoNotOptimize(p);
        primFreeImage(p);
    }
}
BENCHMARK(AllocImage<primAlloc_8u_C1>)->Name("primAlloc_8u_C1 and primFreeImage");
BENCHMARK(AllocImage<primAlloc_8u_C3>)->Name("primAlloc_8u_C3 and primFreeImage");
BENCHMARK(AllocImage<primAlloc_16s_C1>)->Name("primAlloc_16s_C1 and primFreeImage");
BENCHMARK(AllocImage<primAlloc_16s_C3>)->Name("primAlloc_16s_C3 and primFreeImage");
BENCHMARK(AllocImage<primAlloc_16u_C1>)->Name("primAlloc_16u_C1 and primFreeImage");
BENCHMARK(AllocImage<primAlloc_16u_C3>)->Name("primAlloc_16u_C3 and primFreeImage");
BENCHMARK(AllocImage<primAlloc_32f_C1>)->Name("primAlloc_32f_C1 and primFreeImage");
BENCHMARK(AllocImage<primAlloc_32f_C3>)->Name("primAlloc_32f_C3 and primFreeImage");
BENCHMARK(AllocImage<primAlloc_32fc_C1>)->Name("primAlloc_32fc_C1 and primFreeImage");

template <auto& Query>
void AskBufferSize(benchmark::State& state) {
    int32 bytes = 0;
    for (auto _ : state) {
        Query(kScale, &bytes);
        benchmark::DoNotOptimize(bytes);
    }
}
BENCHMARK(AskBufferSize<primFloodFillGetSize>)->Name("primFloodFillGetSize");
BENCHMARK(AskBufferSize<primCannyGetBufferSize>)->Name("primCannyGetBufferSize");
BENCHMARK(AskBufferSize<primFilterScharrHorizGetBufferSize>)->Name("primFilterScharrHorizGetBufferSize");
BENCHMARK(AskBufferSize<primFilterScharrVertGetBufferSize>)->Name("primFilterScharrVertGetBufferSize");

template <auto& Query>
void AskSobelBufferSize(benchmark::State& state) {
    int32 bytes = 0;
    for (auto _ : state) {
        Query(kScale, 33, &bytes);
        benchmark::DoNotOptimize(bytes);
    }
}
BENCHMARK(AskSobelBufferSize<primFilterSobelHorizGetBufferSize>)->Name("primFilterSobelHorizGetBufferSize");
BENCHMARK(AskSobelBufferSize<primFilterSobelNegVertGetBufferSize>)->Name("primFilterSobelNegVertGetBufferSize");

void RotateShift(benchmark::State& state) {
    double x = 0.0, y = 0.0;
    for (auto _ : state) {
        primGetRotateShift(174.0, 131.0, 7.0, &x, &y);
        benchmark::DoNotOptimize(x);
    }
}
BENCHMARK(RotateShift)->Name("primGetRotateShift");

template <auto& Corners, std::size_t kCount>
void AskCorners(benchmark::State& state) {
    double corners[kCount][2];
    for (auto _ : state) {
        Corners({0, 0, kScale.width, kScale.height}, corners, 7.0, 3.0, 4.0);
        benchmark::DoNotOptimize(corners);
    }
}
BENCHMARK(AskCorners<primGetRotateQuad, 4>)->Name("primGetRotateQuad");
BENCHMARK(AskCorners<primGetRotateBound, 2>)->Name("primGetRotateBound");

/// A stage of 200 classifiers of three rectangles, about the largest of the delivered file.
struct StageTables {
    static constexpr int32 kCount = 200;
    std::vector<ImageRect> rects = std::vector<ImageRect>(std::size_t{3} * kCount, {1, 2, 5, 6});
    std::vector<float> weights = std::vector<float>(rects.size(), 0.01F), values = std::vector<float>(kCount, 1.0F);
    std::vector<int32> counts = std::vector<int32>(kCount, 3);

    HaarClassifier* Make() const {
        HaarClassifier* stage = nullptr;
        primHaarClassifierInitAlloc_32f(&stage, rects.data(), weights.data(), values.data(), values.data(),
                                        values.data(), counts.data(), kCount);
        return stage;
    }
};

void MakeStage(benchmark::State& state) {
    const StageTables tables;
    for (auto _ : state) primHaarClassifierFree_32f(tables.Make());
}
BENCHMARK(MakeStage)->Name("primHaarClassifierInitAlloc_32f and primHaarClassifierFree_32f (200 classifiers)");

void AskStageSize(benchmark::State& state) {
    HaarClassifier* stage = StageTables().Make();
    ImageSize size{};
    for (auto _ : state) {
        primGetHaarClassifierSize_32f(stage, &size);
        benchmark::DoNotOptimize(size);
    }
    primHaarClassifierFree_32f(stage);
}
BENCHMARK(AskStageSize)->Name("primGetHaarClassifierSize_32f (200 classifiers)");

} // namespace
} // namespace orvane::bench
