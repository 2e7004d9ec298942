// The primitives of single pixels and of neighbourhoods on a 1600 by 1200 photograph, each beside a
// memcpy of its input.
#include "bench/beside_memcpy.h"
#include "bench/photo.h"
#include "image/image_buffer.h"
#include "primitives/primitives.h"

namespace orvane::bench {
namespace {

constexpr ImageSize kPhoto{1600, 1200};
constexpr ImageRect kWhole{0, 0, kPhoto.width, kPhoto.height};
// The region that neighbourhood operations change: they read a frame of pixels around it.
constexpr int32 kFrame = 4;
constexpr ImageSize kInner{kPhoto.width - 2 * kFrame, kPhoto.height - 2 * kFrame};

/// What the operations work on. Those in place are repeatable: their time does not go by the values.
struct Work {
    ImageBuffer colour, colourOut, floats, grey, greyOut, mask, gradient, gradientOut;
    ImageBuffer planes[3];
    std::vector<uint8> buffer;

    Work() {
        MakePhoto(kPhoto, colour);
        for (ImageBuffer* plane : {&grey, &greyOut, &mask, &planes[0], &planes[1], &planes[2]}) {
            plane->Create(kPhoto.width, kPhoto.height, 1, kDepth8u, 0);
        }
        colourOut.Create(kPhoto.width, kPhoto.height, 3, kDepth8u, 0);
        floats.Create(kPhoto.width, kPhoto.height, 3, kDepth32f, 0);
        gradient.Create(kPhoto.width, kPhoto.height, 1, kDepth16s, 0);
        gradientOut.Create(kPhoto.width, kPhoto.height, 1, kDepth16s, 0);
        primRGBToGray_8u_C3C1(colour.data, colour.Step(), grey.data, grey.Step(), kPhoto);
        primCompareC_8u_C1(grey.data, grey.Step(), 127, mask.data, mask.Step(), kPhoto, 4);
        primConvert_8u32f_C3(colour.data, colour.Step(), Floats(), floats.Step(), kPhoto);
        int32 bytes = 0, most = 0;
        for (const auto query :
             {primFilterScharrHorizGetBufferSize, primFilterScharrVertGetBufferSize, primFloodFillGetSize}) {
            query(kPhoto, &bytes);
            most = std::max(most, bytes);
        }
        buffer.resize(static_cast<std::size_t>(most));
    }

    float* Floats() { return reinterpret_cast<float*>(floats.data); }
    int16* Gradient() { return reinterpret_cast<int16*>(gradient.data); }
    uint8* Inner() { return RowAt(grey.data, grey.Step(), kFrame) + kFrame; }
};

constexpr std::size_t kGreyBytes = std::size_t{1600} * 1200;
constexpr std::size_t kColourBytes = 3 * kGreyBytes;
constexpr std::size_t kFloatBytes = 4 * kColourBytes;

struct Entry {
    const char* name;
    std::size_t inputBytes;
    void (*run)(Work&);
};

/// Fills the plane's largest area back and forth: the whole plane, which is set flat before.
template <auto& Fill>
void Flood(Work& w) {
    primSet_8u_C1(10, w.greyOut.data, w.greyOut.Step(), kPhoto);
    ConnectedRegion region;
    Fill(w.greyOut.data, w.greyOut.Step(), kPhoto, {800, 600}, 20, &region, w.buffer.data());
}

const Entry kEntries[] = {
    {"primSet_8u_C1", kGreyBytes, [](Work& w) { primSet_8u_C1(7, w.greyOut.data, w.greyOut.Step(), kPhoto); }},
    {"primSet_16s_C1", 2 * kGreyBytes, [](Work& w) { primSet_16s_C1(7, w.Gradient(), w.gradient.Step(), kPhoto); }},
    {"primSet_32f_C1", kFloatBytes,
     [](Work& w) {
         primSet_32f_C1(7.0F, w.Floats(), w.floats.Step(), {3 * kPhoto.width, kPhoto.height});
     }},
    {"primCopy_8u_C1", kGreyBytes,
     [](Work& w) { primCopy_8u_C1(w.grey.data, w.grey.Step(), w.greyOut.data, w.greyOut.Step(), kPhoto); }},
    {"primCopy_16u_C1", 2 * kGreyBytes,
     [](Work& w) {
         primCopy_16u_C1(reinterpret_cast<const uint16*>(w.gradient.data), w.gradient.Step(),
                         reinterpret_cast<uint16*>(w.gradientOut.data), w.gradientOut.Step(), kPhoto);
     }},
    {"primCopy_32f_C1", kGreyBytes * 4,
     [](Work& w) { primCopy_32f_C1(w.Floats(), w.floats.Step(), w.Floats() + kPhoto.width, w.floats.Step(), kPhoto); }},
    {"primSetMasked_8u_C1", kGreyBytes,
     [](Work& w) { primSetMasked_8u_C1(9, w.greyOut.data, w.greyOut.Step(), kPhoto, w.mask.data, w.mask.Step()); }},
    {"primCopyMasked_8u_C3", kColourBytes,
     [](Work& w) {
         primCopyMasked_8u_C3(w.colour.data, w.colour.Step(), w.colourOut.data, w.colourOut.Step(), kPhoto, w.mask.data,
                              w.mask.Step());
     }},
    {"primCopy_8u_C3P3", kColourBytes,
     [](Work& w) {
         uint8* const to[3] = {w.planes[0].data, w.planes[1].data, w.planes[2].data};
         primCopy_8u_C3P3(w.colour.data, w.colour.Step(), to, w.planes[0].Step(), kPhoto);
     }},
    {"primSwapChannels_8u_C3", kColourBytes,
     [](Work& w) {
         const int32 order[3] = {2, 1, 0};
         primSwapChannels_8u_C3(w.colour.data, w.colour.Step(), w.colourOut.data, w.colourOut.Step(), kPhoto, order);
     }},
    {"primAnd_8u_C1I", kGreyBytes,
     [](Work& w) { primAnd_8u_C1I(w.mask.data, w.mask.Step(), w.greyOut.data, w.greyOut.Step(), kPhoto); }},
    {"primThresholdLTValGTVal_8u_C1", kGreyBytes,
     [](Work& w) {
         primThresholdLTValGTVal_8u_C1(w.grey.data, w.grey.Step(), w.greyOut.data, w.greyOut.Step(), kPhoto, 60, 0, 190,
                                       255);
     }},
    {"primThresholdVal_8u_C1I", kGreyBytes,
     [](Work& w) { primThresholdVal_8u_C1I(w.greyOut.data, w.greyOut.Step(), kPhoto, 60, 0, 0); }},
    {"primCompareC_8u_C1", kGreyBytes,
     [](Work& w) { primCompareC_8u_C1(w.grey.data, w.grey.Step(), 127, w.greyOut.data, w.greyOut.Step(), kPhoto, 4); }},
    {"primConvert_8u32f_C3", kColourBytes,
     [](Work& w) { primConvert_8u32f_C3(w.colour.data, w.colour.Step(), w.Floats(), w.floats.Step(), kPhoto); }},
    {"primConvert_32f8u_C3", kFloatBytes,
     [](Work& w) {
         primConvert_32f8u_C3(w.Floats(), w.floats.Step(), w.colourOut.data, w.colourOut.Step(), kPhoto, 1);
     }},
    {"primMulC_32f_C3I", kFloatBytes,
     [](Work& w) {
         const float one[3] = {1.0F, 1.0F, 1.0F};
         primMulC_32f_C3I(one, w.Floats(), w.floats.Step(), kPhoto);
     }},
    {"primSubC_8u_C3ISfs", kColourBytes,
     [](Work& w) {
         const uint8 value[3] = {1, 2, 3};
         primSubC_8u_C3ISfs(value, w.colourOut.data, w.colourOut.Step(), kPhoto, 0);
     }},
    {"primRGBToHSV_8u_C3", kColourBytes,
     [](Work& w) { primRGBToHSV_8u_C3(w.colour.data, w.colour.Step(), w.colourOut.data, w.colourOut.Step(), kPhoto); }},
    {"primCountInRange_8u_C3", kColourBytes,
     [](Work& w) {
         int32 counts[3];
         const uint8 lower[3] = {0, 0, 0}, upper[3] = {9, 19, 29};
         primCountInRange_8u_C3(w.colour.data, w.colour.Step(), kPhoto, counts, lower, upper);
         benchmark::DoNotOptimize(counts);
     }},
    {"primHistogramEven_8u_C1", kGreyBytes,
     [](Work& w) {
         int32 hist[255], levels[256];
         primHistogramEven_8u_C1(w.grey.data, w.grey.Step(), kPhoto, hist, levels, 256, 0, 255);
         benchmark::DoNotOptimize(hist);
     }},
    {"primErode3x3_8u_C1I", kGreyBytes, [](Work& w) { primErode3x3_8u_C1I(w.Inner(), w.grey.Step(), kInner); }},
    {"primErode_8u_C1I (5x5)", kGreyBytes,
     [](Work& w) {
         static const std::vector<uint8> cells(25, 1);
         primErode_8u_C1I(w.Inner(), w.grey.Step(), kInner, cells.data(), {5, 5}, {2, 2});
     }},
    {"primFilterBox_8u_C1I (3x3)", kGreyBytes,
     [](Work& w) {
         primFilterBox_8u_C1I(w.Inner(), w.grey.Step(), kInner, {3, 3}, {1, 1});
     }},
    {"primFilterSobelHorizBorder_8u16s_C1 (5x5)", kGreyBytes,
     [](Work& w) {
         primFilterSobelHorizBorder_8u16s_C1(w.grey.data, w.grey.Step(), w.Gradient(), w.gradient.Step(), kPhoto, 55, 1,
                                             0, w.buffer.data());
     }},
    {"primFilterScharrHorizBorder_8u16s_C1", kGreyBytes,
     [](Work& w) {
         primFilterScharrHorizBorder_8u16s_C1(w.grey.data, w.grey.Step(), w.Gradient(), w.gradient.Step(), kPhoto, 1, 0,
                                              w.buffer.data());
     }},
    {"primFilterScharrVertBorder_8u16s_C1", kGreyBytes,
     [](Work& w) {
         primFilterScharrVertBorder_8u16s_C1(w.grey.data, w.grey.Step(), w.Gradient(), w.gradient.Step(), kPhoto, 1, 0,
                                             w.buffer.data());
     }},
    {"primFloodFill4_8u_C1I (with a plain fill)", kGreyBytes, Flood<primFloodFill4_8u_C1I>},
    {"primFloodFill8_8u_C1I (with a plain fill)", kGreyBytes, Flood<primFloodFill8_8u_C1I>},
    {"primRotate_8u_C3 (linear, 7 degrees)", kColourBytes,
     [](Work& w) {
         primRotate_8u_C3(w.colour.data, kPhoto, w.colour.Step(), kWhole, w.colourOut.data, w.colourOut.Step(), kWhole,
                          7.0, 0.0, 0.0, kLinear);
     }},
    {"primRotate_8u_C3 (half turn)", kColourBytes,
     [](Work& w) {
         primRotate_8u_C3(w.colour.data, kPhoto, w.colour.Step(), kWhole, w.colourOut.data, w.colourOut.Step(), kWhole,
                          180.0, kPhoto.width - 1, kPhoto.height - 1, kNearest);
     }},
    {"primRotate_8u_C1 (linear, 7 degrees)", kGreyBytes,
     [](Work& w) {
         primRotate_8u_C1(w.grey.data, kPhoto, w.grey.Step(), kWhole, w.greyOut.data, w.greyOut.Step(), kWhole, 7.0,
                          0.0, 0.0, kLinear);
     }},
    {"primRotateCenter_8u_C1 (linear, 7 degrees)", kGreyBytes,
     [](Work& w) {
         primRotateCenter_8u_C1(w.grey.data, kPhoto, w.grey.Step(), kWhole, w.greyOut.data, w.greyOut.Step(), kWhole,
                                7.0, kPhoto.width / 2.0, kPhoto.height / 2.0, kLinear);
     }},
    {"primRotateCenter_8u_C3 (quarter turn)", kColourBytes,
     [](Work& w) {
         primRotateCenter_8u_C3(w.colour.data, kPhoto, w.colour.Step(), kWhole, w.colourOut.data, w.colourOut.Step(),
                                kWhole, 90.0, kPhoto.height / 2.0, kPhoto.height / 2.0, kNearest);
     }},
    {"primCopyConstBorder_8u_C1", kGreyBytes,
     [](Work& w) {
         primCopyConstBorder_8u_C1(w.grey.data, w.grey.Step(), kInner, w.greyOut.data, w.greyOut.Step(), kPhoto, kFrame,
                                   kFrame, 255);
     }},
    {"primCopyConstBorder_16s_C1", 2 * kGreyBytes,
     [](Work& w) {
         primCopyConstBorder_16s_C1(w.Gradient(), w.gradient.Step(), kInner,
                                    reinterpret_cast<int16*>(w.gradientOut.data), w.gradientOut.Step(), kPhoto, kFrame,
                                    kFrame, 255);
     }},
};

void RunEntry(benchmark::State& state, const Entry& entry) {
    Work work;
    RunBesideMemcpy(state, entry.inputBytes, [&] { entry.run(work); });
}

const bool kRegistered = [] {
    for (const Entry& entry : kEntries) benchmark::RegisterBenchmark(entry.name, RunEntry, entry);
    return true;
}();

} // namespace
} // namespace orvane::bench
