// Which pixels have a colour of the background: those whose value and saturation both lie in a band around
// one of the samples.
#pragma once

#include "actions/background_analyzer.h"

namespace orvane {

/// Sets the pixels of `mask` to 0 that have a background colour; no other pixel changes. A larger tolerance
/// makes wider bands. Sample points beyond the planes say nothing.
/// @param mask as large as the analyzer's planes
/// False, with nothing marked, for a mask of another size or without storage.
bool MarkAllSamples(BackgroundAnalyzer& analyzer, ImageBuffer& mask, int32 tolerance);

/// The band of one sample: values from value - 1.5 * radius to value + radius, saturations within half a
/// radius.
void MarkAroundSample(ImageBuffer& mask, BackgroundAnalyzer& analyzer, int32 value, int32 saturation, int32 radius);

/// Sets the pixels of `mask` to 0 whose value and saturation lie in the two ranges, bounds included, and
/// have a bit in common. A bound beyond a byte is moved by 255 to the range's other end; the range is then
/// everything but what lies from the smaller to the larger bound. Where the saturation's range does so, it
/// decides alone, whatever the value. The ranges of later calls may depend on the scratch planes that this
/// one leaves, but only where bounds are so far out that a primitive refuses them.
void MarkColourBand(int32 valueLow, int32 valueHigh, BackgroundAnalyzer& analyzer, int32 saturationLow,
                    int32 saturationHigh, ImageBuffer& mask);

} // namespace orvane
