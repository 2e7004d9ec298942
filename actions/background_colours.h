// Which pixels have a colour of the background: those whose value and saturation both lie in a band around
// one of the samples.
#pragma once

#include "actions/background_analyzer.h"

namespace orvane {

/// Makes `mask` anew, as large as `source`, a picture of three channels: 0 for the pixels that have a background
/// colour, 154 for all others. A larger tolerance makes wider bands. Sample points beyond the picture say nothing.
/// False without storage.
bool MarkAllSamples(const ImageBuffer& source, const BackgroundAnalyzer& analyzer, ImageBuffer& mask, int32 tolerance);

} // namespace orvane
