// Every primitive that walks a picture, on the planes of a 1600 by 1200 photograph or of one scale of
// the scan, beside a memcpy of its input.
#include "bench/beside_memcpy.h"
#include "bench/photo.h"
#include "image/image_buffer.h"
#include "primitives/primitives.h"

namespace orvane::bench {
namespace {

constexpr ImageSize kPhoto{1600, 1200};
constexpr ImageSize kScale{349, 262}; // the largest scale of the scan of a 640 by 480 picture

std::size_t Bytes(const ImageBuffer& image) {
    return static_cast<std::size_t>(image.Step()) * static_cast<std::size_t>(image.height);
}

/// A colour photograph and its grey plane in one size.
struct Planes {
    explicit Planes(ImageSize size) {
        MakePhoto(size, colour);
        grey.Create(size.width, size.height, 1, kDepth8u, 0);
        primRGBToGray_8u_C3C1(colour.data, colour.Step(), grey.data, grey.Step(), size);
    }
    ImageBuffer colour, grey;
};

template <typename T>
T* As(ImageBuffer& image) {
    return reinterpret_cast<T*>(image.data);
}

void Copy(benchmark::State& state) {
    Planes p(kPhoto);
    ImageBuffer out;
    out.Create(kPhoto.width, kPhoto.height, 3, kDepth8u, 0);
    RunBesideMemcpy(state, Bytes(p.colour),
                    [&] { primCopy_8u_C3(p.colour.data, p.colour.Step(), out.data, out.Step(), kPhoto); });
}
BENCHMARK(Copy)->Name("primCopy_8u_C3");

void Fill(benchmark::State& state) {
    Planes p(kPhoto);
    const uint8 value[3] = {1, 2, 3};
    RunBesideMemcpy(state, Bytes(p.colour), [&] { primSet_8u_C3(value, p.colour.data, p.colour.Step(), kPhoto); });
}
BENCHMARK(Fill)->Name("primSet_8u_C3");

void Grey(benchmark::State& state) {
    Planes p(kPhoto);
    RunBesideMemcpy(state, Bytes(p.colour),
                    [&] { primRGBToGray_8u_C3C1(p.colour.data, p.colour.Step(), p.grey.data, p.grey.Step(), kPhoto); });
}
BENCHMARK(Grey)->Name("primRGBToGray_8u_C3C1");

void Integral(benchmark::State& state) {
    Planes p(kScale);
    ImageBuffer sum, squares;
    sum.Create(kScale.width + 1, kScale.height + 1, 1, kDepth32f, 0);
    squares.Create(kScale.width + 1, kScale.height + 1, 1, kDepth64f, 0);
    RunBesideMemcpy(state, Bytes(p.grey), [&] {
        primSqrIntegral_8u32f64f_C1(p.grey.data, p.grey.Step(), As<float>(sum), sum.Step(), As<double>(squares),
                                    squares.Step(), kScale, -16777216.0F, 0.0);
    });
}
BENCHMARK(Integral)->Name("primSqrIntegral_8u32f64f_C1");

void StdDev(benchmark::State& state) {
    Planes p(kScale);
    ImageBuffer sum, squares, norm;
    sum.Create(kScale.width + 1, kScale.height + 1, 1, kDepth32f, 0);
    squares.Create(kScale.width + 1, kScale.height + 1, 1, kDepth64f, 0);
    norm.Create(kScale.width, kScale.height, 1, kDepth32f, 0);
    primSqrIntegral_8u32f64f_C1(p.grey.data, p.grey.Step(), As<float>(sum), sum.Step(), As<double>(squares),
                                squares.Step(), kScale, -16777216.0F, 0.0);
    const ImageSize positions{kScale.width - 23, kScale.height - 23};
    RunBesideMemcpy(state, Bytes(p.grey), [&] {
        primRectStdDev_32f_C1(As<float>(sum), sum.Step(), As<double>(squares), squares.Step(), As<float>(norm),
                              norm.Step(), positions, {1, 1, 22, 22});
    });
}
BENCHMARK(StdDev)->Name("primRectStdDev_32f_C1");

/// A stage of twenty classifiers of two rectangles over a mask that is wholly open.
void Stage(benchmark::State& state) {
    Planes p(kScale);
    ImageBuffer sum, squares, norm, mask;
    sum.Create(kScale.width + 1, kScale.height + 1, 1, kDepth32f, 0);
    squares.Create(kScale.width + 1, kScale.height + 1, 1, kDepth64f, 0);
    norm.Create(kScale.width, kScale.height, 1, kDepth32f, 0);
    mask.Create(kScale.width, kScale.height, 1, kDepth8u, 0);
    primSqrIntegral_8u32f64f_C1(p.grey.data, p.grey.Step(), As<float>(sum), sum.Step(), As<double>(squares),
                                squares.Step(), kScale, -16777216.0F, 0.0);
    const ImageSize positions{kScale.width - 23, kScale.height - 23};
    primRectStdDev_32f_C1(As<float>(sum), sum.Step(), As<double>(squares), squares.Step(), As<float>(norm), norm.Step(),
                          positions, {1, 1, 22, 22});
    constexpr std::size_t kCount = 20;
    std::vector<ImageRect> rects;
    std::vector<float> weights, thresholds(kCount, 0.0F), low(kCount, -1.0F), high(kCount, 1.0F);
    const std::vector<int32> counts(kCount, 2);
    for (int32 i = 0; i < static_cast<int32>(kCount); ++i) {
        rects.push_back({i % 5, i % 7, 12, 16});
        rects.push_back({i % 5, i % 7, 6, 16});
        weights.push_back(-1.0F / 484);
        weights.push_back(2.0F / 484);
    }
    HaarClassifier* stage = nullptr;
    primHaarClassifierInitAlloc_32f(&stage, rects.data(), weights.data(), thresholds.data(), low.data(), high.data(),
                                    counts.data(), kCount);
    int32 positive = 0;
    RunBesideMemcpy(state, Bytes(p.grey), [&] {
        mask.Fill(255.0); // a small part of the work; the stage leaves about half of it
        primApplyHaarClassifier_32f_C1(As<float>(sum), sum.Step(), As<float>(norm), norm.Step(), mask.data, mask.Step(),
                                       positions, &positive, 0.0F, stage);
    });
    primHaarClassifierFree_32f(stage);
}
BENCHMARK(Stage)->Name("primApplyHaarClassifier_32f_C1 (20 classifiers)");

using Resize = decltype(&generic::primResize_8u_C1);

void RunResize(benchmark::State& state, Resize resize, const ImageBuffer& from, double factor, int32 interpolation) {
    ImageBuffer to;
    to.Create(static_cast<int32>(from.width * factor), static_cast<int32>(from.height * factor), from.channels,
              kDepth8u, 0);
    RunBesideMemcpy(state, Bytes(from), [&] {
        resize(from.data, from.Size(), from.Step(), {0, 0, from.width, from.height}, to.data, to.Step(), to.Size(),
               factor, factor, interpolation);
    });
}

void ResizeGrey(benchmark::State& state, double factor, int32 interpolation) {
    Planes p(kPhoto);
    RunResize(state, primResize_8u_C1, p.grey, factor, interpolation);
}

void ResizeColour(benchmark::State& state, double factor, int32 interpolation) {
    Planes p(kPhoto);
    RunResize(state, primResize_8u_C3, p.colour, factor, interpolation);
}
BENCHMARK_CAPTURE(ResizeGrey, Nearest, 0.218, kNearest)->Name("primResize_8u_C1 nearest 0.218");
BENCHMARK_CAPTURE(ResizeGrey, Linear, 1.25, kLinear)->Name("primResize_8u_C1 linear 1.25");
BENCHMARK_CAPTURE(ResizeColour, Cubic, 1.25, kCubic)->Name("primResize_8u_C3 cubic 1.25");
BENCHMARK_CAPTURE(ResizeColour, Box, 0.8, kBoxAverage)->Name("primResize_8u_C3 box average 0.8");

/// Both gradients of a plane.
struct Gradients {
    explicit Gradients(ImageSize size) {
        dx.Create(size.width, size.height, 1, kDepth16s, 0);
        dy.Create(size.width, size.height, 1, kDepth16s, 0);
        int32 bytes = 0, larger = 0;
        primFilterSobelNegVertGetBufferSize(size, 55, &bytes);
        primFilterSobelHorizGetBufferSize(size, 55, &larger);
        buffer.resize(static_cast<std::size_t>(std::max(bytes, larger)));
    }
    ImageBuffer dx, dy;
    std::vector<uint8> buffer;
};

void Sobel(benchmark::State& state) {
    Planes p(kScale);
    Gradients g(kScale);
    RunBesideMemcpy(state, Bytes(p.grey), [&] {
        primFilterSobelNegVertBorder_8u16s_C1(p.grey.data, p.grey.Step(), As<int16>(g.dx), g.dx.Step(), kScale, 33, 1,
                                              0, g.buffer.data());
    });
}
BENCHMARK(Sobel)->Name("primFilterSobelNegVertBorder_8u16s_C1");

void Canny(benchmark::State& state) {
    Planes p(kScale);
    Gradients g(kScale);
    primFilterSobelNegVertBorder_8u16s_C1(p.grey.data, p.grey.Step(), As<int16>(g.dx), g.dx.Step(), kScale, 33, 1, 0,
                                          g.buffer.data());
    primFilterSobelHorizBorder_8u16s_C1(p.grey.data, p.grey.Step(), As<int16>(g.dy), g.dy.Step(), kScale, 33, 1, 0,
                                        g.buffer.data());
    int32 bytes = 0;
    primCannyGetBufferSize(kScale, &bytes);
    std::vector<uint8> buffer(static_cast<std::size_t>(bytes));
    ImageBuffer map;
    map.Create(kScale.width, kScale.height, 1, kDepth8u, 0);
    RunBesideMemcpy(state, Bytes(p.grey), [&] {
        primCanny_16s8u_C1(As<int16>(g.dx), g.dx.Step(), As<int16>(g.dy), g.dy.Step(), map.data, map.Step(), kScale,
                           8.0F, 24.0F, buffer.data());
    });
}
BENCHMARK(Canny)->Name("primCanny_16s8u_C1");

} // namespace
} // namespace orvane::bench
