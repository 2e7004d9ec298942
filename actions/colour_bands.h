// Bands of colours, ranges of value and saturation around a sample, laid over a plane that holds every pair of the
// two once: row v has value v, column s saturation s.
#pragma once

#include "image/image_buffer.h"

#include <array>

namespace orvane {

inline constexpr int32 kColourLevels = 256;
inline constexpr int32 kColourPairs = kColourLevels * kColourLevels;

/// Bounds that belong to the ranges. One beyond a byte is moved by 255 to the range's other end; the range is then
/// everything but what lies from the smaller to the larger bound.
struct ColourBand {
    int32 valueLow, valueHigh;
    int32 saturationLow, saturationHigh;
};

/// The band of one sample: values from value - 1.5 * radius to value + radius, saturations within half a
/// radius.
ColourBand BandAround(int32 value, int32 saturation, int32 radius);

/// Some of the saturations, a bit each.
class SaturationSet {
public:
    constexpr bool Has(int32 saturation) const {
        return (words_[static_cast<std::size_t>(saturation / 64)] >> saturation % 64 & 1) != 0;
    }
    constexpr void Add(int32 saturation) {
        words_[static_cast<std::size_t>(saturation / 64)] |= uint64{1} << saturation % 64;
    }
    constexpr SaturationSet& operator|=(const SaturationSet& other) {
        for (std::size_t i = 0; i < words_.size(); ++i) words_[i] |= other.words_[i];
        return *this;
    }
    constexpr SaturationSet& operator&=(const SaturationSet& other) {
        for (std::size_t i = 0; i < words_.size(); ++i) words_[i] &= other.words_[i];
        return *this;
    }

private:
    std::array<uint64, kColourLevels / 64> words_{};
};

/// The marked saturations of each value.
using ColourMarks = std::array<SaturationSet, kColourLevels>;

/// Marks the pairs whose value and saturation lie in the two ranges and have a bit in common. Where the saturation's
/// range goes round, it decides alone, whatever the value.
/// False, with nothing marked, for bounds so far out that they end in the wrong order: see BandPlanes.
bool MarkBand(const ColourBand& band, ColourMarks& marks);

/// The same by primitives over planes, whatever the bounds: a primitive refuses those in the wrong order, which is
/// told, and what it would have written stays as the band before left it. So all bands of a picture go this way
/// where one of them must.
class BandPlanes {
public:
    /// False without storage.
    bool Create();

    /// Sets the marks of 256 by 256 pixels to 0.
    void Mark(const ColourBand& band, ImageBuffer& marks);

private:
    ImageBuffer values_, saturations_, a_, b_;
};

} // namespace orvane
