// Bands of colours, ranges of value and saturation around a sample, laid over a plane that holds every pair of the
// two once: row v has value v, column s saturation s.
#pragma once

#include "image/image_buffer.h"

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

/// Sets the marks to 0 of the pairs whose value and saturation lie in the two ranges and have a bit in common. Where
/// the saturation's range goes round, it decides alone, whatever the value.
/// @param marks kColourPairs of them; no other one changes
/// False, with nothing marked, for bounds so far out that they end in the wrong order: see BandPlanes.
bool MarkBand(const ColourBand& band, uint8* marks);

/// The same by primitives over planes, whatever the bounds: a primitive refuses those in the wrong order, which is
/// told, and what it would have written stays as the band before left it. So all bands of a picture go this way
/// where one of them must.
class BandPlanes {
public:
    /// False without storage.
    bool Create();

    void Mark(const ColourBand& band, ImageBuffer& marks);

private:
    ImageBuffer values_, saturations_, a_, b_;
};

} // namespace orvane
