// Whether a colour is marked depends on its value and saturation alone. So the bands of all samples are
// marked once in a plane that holds each of the 65,536 pairs, and the picture is looked up in it. A picture
// of fewer pixels is marked directly.
#include "actions/background_colours.h"

#include "actions/assertion.h"
#include "primitives/primitives.h"
#include "primitives/trunc.h"

#include <algorithm>
#include <optional>

namespace orvane {
namespace {

constexpr int32 kLevels = 256;
constexpr int32 kPairs = kLevels * kLevels;

/// A range of levels after a bound beyond the byte has been moved to the other end.
struct LevelRange {
    uint8 low;
    uint8 high;
    bool wrapped;
};

LevelRange WrapRange(int32 low, int32 high) {
    const bool wrapped = low < 0 || high > 255;
    if (low < 0) low += 255;
    if (high > 255) high -= 255;
    // Bounds that are beyond the byte even so go to the primitives as their lowest eight bits.
    return {static_cast<uint8>(std::min(low, high)), static_cast<uint8>(std::max(low, high)), wrapped};
}

/// Keeps the levels in the range, all others become 0.
void KeepRange(const ImageBuffer& plane, LevelRange range, ImageBuffer& kept) {
    ReportStatus(primThresholdLTValGTVal_8u_C1(plane.data, plane.Step(), kept.data, kept.Step(), plane.Size(),
                                               range.low, 0, range.high, 0));
}

/// 255 where nothing was kept, 0 else.
void Invert(const ImageBuffer& kept, ImageBuffer& inverted) {
    ReportStatus(primCompareC_8u_C1(kept.data, kept.Step(), 0, inverted.data, inverted.Step(), kept.Size(), kEqual));
}

/// The pixel at a sample point. A coordinate that equals the plane's size is moved back by one.
std::optional<uint8> ReadSample(const ImageBuffer& plane, ImagePoint at) {
    if (plane.data == nullptr || at.x < 0 || at.y < 0 || at.x > plane.width || at.y > plane.height) return {};
    return RowAt(plane.data, plane.Step(), std::min(at.y, plane.height - 1))[std::min(at.x, plane.width - 1)];
}

/// Marks the bands around the samples of `picture` in `mask`, which belongs to the planes of `marked`.
void MarkSamples(const BackgroundAnalyzer& picture, int32 radius, BackgroundAnalyzer& marked, ImageBuffer& mask) {
    for (const ImagePoint& point : picture.samplePoints) {
        const auto value = ReadSample(picture.valuePlane, point);
        const auto saturation = ReadSample(picture.saturationPlane, point);
        if (value && saturation) MarkAroundSample(mask, marked, *value, *saturation, radius);
    }
}

/// Planes that hold every pair once: row v holds the saturations 0 to 255 with value v.
bool MakeAllPairs(BackgroundAnalyzer& pairs) {
    if (!pairs.PrepareScratch(kLevels, kLevels) || !pairs.valuePlane.Create(kLevels, kLevels, 1, kDepth8u, 0) ||
        !pairs.saturationPlane.Create(kLevels, kLevels, 1, kDepth8u, 0)) {
        return false;
    }
    for (int32 i = 0; i < kPairs; ++i) {
        pairs.valuePlane.data[i] = static_cast<uint8>(i / kLevels);
        pairs.saturationPlane.data[i] = static_cast<uint8>(i % kLevels);
    }
    return true;
}

} // namespace

bool MarkAllSamples(BackgroundAnalyzer& analyzer, ImageBuffer& mask, int32 tolerance) {
    const ImageBuffer& values = analyzer.valuePlane;
    const ImageBuffer& saturations = analyzer.saturationPlane;
    if (mask.data == nullptr || mask.width != values.width || mask.height != values.height) return false;
    const int32 radius = TruncToInt32(std::max(tolerance, 1) * 0.6 + 0.5);
    if (int64{mask.width} * mask.height <= kPairs) {
        MarkSamples(analyzer, radius, analyzer, mask);
        return true;
    }
    BackgroundAnalyzer pairs;
    if (!MakeAllPairs(pairs)) return false;
    ImageBuffer& answers = pairs.classPlane;
    answers.Fill(kMaskUnclassified);
    MarkSamples(analyzer, radius, pairs, answers);
    // What of a mask's byte stays: all of its bits or none.
    uint8 kept[kPairs];
    for (int32 i = 0; i < kPairs; ++i) kept[i] = answers.data[i] == kMaskBackground ? 0 : 255;
    for (int32 y = 0; y < mask.height; ++y) {
        const uint8* value = RowAt(values.data, values.Step(), y);
        const uint8* saturation = RowAt(saturations.data, saturations.Step(), y);
        uint8* to = RowAt(mask.data, mask.Step(), y);
        // No branch: none could follow a picture's noise.
        for (int32 x = 0; x < mask.width; ++x) {
            const uint8 keep = kept[kLevels * value[x] + saturation[x]];
            to[x] = static_cast<uint8>((to[x] & keep) | (kMaskBackground & ~keep));
        }
    }
    return true;
}

void MarkAroundSample(ImageBuffer& mask, BackgroundAnalyzer& analyzer, int32 value, int32 saturation, int32 radius) {
    // Lopsided on purpose: it reaches further towards the dark side.
    const int32 valueLow = TruncToInt32(value - 1.5 * radius + 0.5);
    const int32 valueHigh = TruncToInt32(static_cast<double>(int64{value} + radius));
    const int32 saturationLow = TruncToInt32(saturation - 0.5 * radius + 0.5);
    const int32 saturationHigh = TruncToInt32(saturation + 0.5 * radius + 0.5);
    MarkColourBand(valueLow, valueHigh, analyzer, saturationLow, saturationHigh, mask);
}

void MarkColourBand(int32 valueLow, int32 valueHigh, BackgroundAnalyzer& analyzer, int32 saturationLow,
                    int32 saturationHigh, ImageBuffer& mask) {
    ImageBuffer& a = analyzer.scratchA;
    ImageBuffer& b = analyzer.scratchB;
    const LevelRange values = WrapRange(valueLow, valueHigh);
    KeepRange(analyzer.valuePlane, values, a);
    if (values.wrapped) {
        Invert(a, b);
        a.Swap(b);
        b.Fill(0.0);
    }
    const LevelRange saturations = WrapRange(saturationLow, saturationHigh);
    KeepRange(analyzer.saturationPlane, saturations, b);
    if (saturations.wrapped) {
        Invert(b, a); // over the answer for the value, which then plays no part
        b.CopyFrom(a);
    }
    // Bytes that were kept, not yes or no: a pair without a common bit stays unmarked.
    ReportStatus(primAnd_8u_C1I(b.data, b.Step(), a.data, a.Step(), a.Size()));
    ReportStatus(primSetMasked_8u_C1(kMaskBackground, mask.data, mask.Step(), a.Size(), a.data, a.Step()));
}

} // namespace orvane
