#include "actions/colour_bands.h"

#include "actions/assertion.h"
#include "primitives/primitives.h"
#include "primitives/trunc.h"

#include <algorithm>

namespace orvane {
namespace {

/// A range of levels after a bound beyond the byte has been moved to the other end.
struct LevelRange {
    uint8 low;
    uint8 high;
    bool wrapped;

    bool IsOrdered() const { return low <= high; }

    /// What is kept of a level: 0 outside the range.
    int32 Kept(int32 level) const { return level >= low && level <= high ? level : 0; }
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

/// The saturations within the range.
SaturationSet Within(LevelRange range) {
    SaturationSet set;
    for (int32 s = range.low; s <= range.high; ++s) set.Add(s);
    return set;
}

/// Those that are not kept of the range: 0 too, which is as if it was not.
SaturationSet Around(LevelRange range) {
    SaturationSet set;
    for (int32 s = 0; s < kColourLevels; ++s) {
        if (range.Kept(s) == 0) set.Add(s);
    }
    return set;
}

/// For each value the saturations that have a bit in common with it.
constexpr ColourMarks kSharingABit = [] {
    ColourMarks marks{};
    for (int32 v = 0; v < kColourLevels; ++v) {
        for (int32 s = 0; s < kColourLevels; ++s) {
            if ((v & s) != 0) marks[static_cast<std::size_t>(v)].Add(s);
        }
    }
    return marks;
}();

bool CreatePlane(ImageBuffer& plane) { return plane.Create(kColourLevels, kColourLevels, 1, kDepth8u, 0); }

} // namespace

ColourBand BandAround(int32 value, int32 saturation, int32 radius) {
    // Lopsided on purpose: it reaches further towards the dark side.
    return {TruncToInt32(value - 1.5 * radius + 0.5), TruncToInt32(static_cast<double>(int64{value} + radius)),
            TruncToInt32(saturation - 0.5 * radius + 0.5), TruncToInt32(saturation + 0.5 * radius + 0.5)};
}

bool MarkBand(const ColourBand& band, ColourMarks& marks) {
    const LevelRange values = WrapRange(band.valueLow, band.valueHigh);
    const LevelRange saturations = WrapRange(band.saturationLow, band.saturationHigh);
    if (!values.IsOrdered() || !saturations.IsOrdered()) return false;
    const SaturationSet set = saturations.wrapped ? Around(saturations) : Within(saturations);
    for (int32 v = 0; v < kColourLevels; ++v) {
        // Outside a range that goes round, a value counts as one with all bits.
        const int32 kept = values.wrapped ? (values.Kept(v) == 0 ? kColourLevels - 1 : 0) : values.Kept(v);
        SaturationSet marked = set;
        if (!saturations.wrapped) marked &= kSharingABit[static_cast<std::size_t>(kept)];
        marks[static_cast<std::size_t>(v)] |= marked;
    }
    return true;
}

bool BandPlanes::Create() {
    if (!CreatePlane(values_) || !CreatePlane(saturations_) || !CreatePlane(a_) || !CreatePlane(b_)) return false;
    for (int32 i = 0; i < kColourPairs; ++i) {
        values_.data[i] = static_cast<uint8>(i / kColourLevels);
        saturations_.data[i] = static_cast<uint8>(i % kColourLevels);
    }
    return true;
}

void BandPlanes::Mark(const ColourBand& band, ImageBuffer& marks) {
    const LevelRange values = WrapRange(band.valueLow, band.valueHigh);
    KeepRange(values_, values, a_);
    if (values.wrapped) {
        Invert(a_, b_);
        a_.Swap(b_);
        b_.Fill(0.0);
    }
    const LevelRange saturations = WrapRange(band.saturationLow, band.saturationHigh);
    KeepRange(saturations_, saturations, b_);
    if (saturations.wrapped) {
        Invert(b_, a_); // over the answer for the value, which then plays no part
        b_.CopyFrom(a_);
    }
    // Bytes that were kept, not yes or no: a pair without a common bit stays unmarked.
    ReportStatus(primAnd_8u_C1I(b_.data, b_.Step(), a_.data, a_.Step(), a_.Size()));
    ReportStatus(primSetMasked_8u_C1(0, marks.data, marks.Step(), a_.Size(), a_.data, a_.Step()));
}

} // namespace orvane
