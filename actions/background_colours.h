// Which pixels have a colour of the background: those whose value and saturation both lie in a band around
// one of the samples.
#pragma once

#include "actions/background_analyzer.h"
#include "primitives/bit_plane.h"

namespace orvane {

/// Makes `others` of the size of `source`, a picture of three channels, and marks in it the pixels that do not have a
/// background colour. A larger tolerance makes wider bands. Sample points beyond the picture say nothing. False without
/// storage.
bool MarkAllSamples(const ImageBuffer& source, const BackgroundAnalyzer& analyzer, BitPlane& others, int32 tolerance);

} // namespace orvane
