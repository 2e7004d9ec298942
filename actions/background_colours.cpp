// Whether a colour is marked depends on its value and saturation alone. So the bands of all samples are laid once
// over the 65,536 pairs. The value is a pixel's largest channel, the saturation follows from that and from how far the
// smallest lies below; so the picture is looked up by these two, and no saturation of a pixel is computed.
#include "actions/background_colours.h"

#include "actions/colour_bands.h"
#include "primitives/primitives.h"
#include "primitives/row_kernels.h"
#include "primitives/saturation.h"
#include "primitives/trunc.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace orvane {
namespace {

/// The different colours at the sample points. A coordinate that equals the picture's size is moved back by one.
class Samples {
public:
    Samples(const ImageBuffer& source, const BackgroundAnalyzer& analyzer) {
        for (const ImagePoint& at : analyzer.samplePoints) {
            if (at.x < 0 || at.y < 0 || at.x > source.width || at.y > source.height) continue;
            const std::ptrdiff_t x = std::min(at.x, source.width - 1);
            const uint8* pixel = RowAt(source.data, source.Step(), std::min(at.y, source.height - 1)) + 3 * x;
            Sample& sample = samples_[count_++];
            SplitValueAndSaturation(pixel, 3, &sample.value, &sample.saturation, 1, {1, 1});
        }
    }

    /// False, with some marked, where a band is none for MarkBand.
    bool Mark(int32 radius, ColourMarks& marks) const {
        for (std::size_t i = 0; i < count_; ++i) {
            if (IsRepeated(i)) continue;
            if (!MarkBand(BandOf(i, radius), marks)) return false;
        }
        return true;
    }

    /// Also the repeated ones, each of which is told where it is refused.
    void MarkByPlanes(int32 radius, BandPlanes& planes, ImageBuffer& marks) const {
        for (std::size_t i = 0; i < count_; ++i) planes.Mark(BandOf(i, radius), marks);
    }

private:
    struct Sample {
        uint8 value, saturation;
        bool operator==(const Sample&) const = default;
    };

    ColourBand BandOf(std::size_t i, int32 radius) const {
        return BandAround(samples_[i].value, samples_[i].saturation, radius);
    }
    bool IsRepeated(std::size_t i) const {
        const Sample* end = samples_.data() + i;
        return std::find(samples_.data(), end, samples_[i]) != end;
    }

    std::array<Sample, std::tuple_size_v<decltype(BackgroundAnalyzer::samplePoints)>> samples_{};
    std::size_t count_ = 0;
};

bool MarkPairs(const Samples& samples, int32 radius, ColourMarks& marks) {
    if (samples.Mark(radius, marks)) return true;
    ImageBuffer plane;
    BandPlanes planes;
    if (!planes.Create() || !plane.Create(kColourLevels, kColourLevels, 1, kDepth8u, 0)) return false;
    plane.Fill(kMaskUnclassified);
    samples.MarkByPlanes(radius, planes, plane);
    marks = {};
    for (int32 i = 0; i < kColourPairs; ++i) {
        if (plane.data[i] != kMaskUnclassified) {
            marks[static_cast<std::size_t>(i / kColourLevels)].Add(i % kColourLevels);
        }
    }
    return true;
}

/// From marks by value and saturation to a table by largest channel and range, of which each largest channel has no
/// more than itself: 1 where there is no mark.
void SortByRanges(const ColourMarks& marks, uint8* byRange) {
    for (int32 v = 0; v < kColourLevels; ++v, byRange += kColourLevels) {
        uint8 pixels[3 * kColourLevels], values[kColourLevels], saturations[kColourLevels];
        std::memset(pixels, v, sizeof pixels);
        for (int32 range = 0; range <= v; ++range) pixels[std::ptrdiff_t{3} * range] = static_cast<uint8>(v - range);
        SplitValueAndSaturation(pixels, sizeof pixels, values, saturations, sizeof values, {v + 1, 1});
        const SaturationSet& marked = marks[static_cast<std::size_t>(v)];
        for (int32 range = 0; range <= v; ++range) byRange[range] = marked.Has(saturations[range]) ? 0 : 1;
    }
}

} // namespace

bool MarkAllSamples(const ImageBuffer& source, const BackgroundAnalyzer& analyzer, BitPlane& others, int32 tolerance) {
    if (!others.Create(source.Size())) return false;
    const int32 radius = TruncToInt32(std::max(tolerance, 1) * 0.6 + 0.5);
    ColourMarks marks{};
    if (!MarkPairs(Samples(source, analyzer), radius, marks)) return false;
    uint8 byRange[kColourPairs];
    SortByRanges(marks, byRange);
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < source.height; ++y) {
        kernels.markColours(RowAt(source.data, source.Step(), y), byRange, others.Row(y), source.width);
    }
    return true;
}

} // namespace orvane
