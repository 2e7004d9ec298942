// Slot 1 of the pipeline: puts a flat field behind the person.
//
// The background's colours are learned from samples along the picture's upper edges. What hangs together
// with the core of the face without crossing such a colour is the person; the background is what is left
// around the upper right corner.
#pragma once

#include "actions/background_analyzer.h"
#include "detect/candidates.h"

namespace orvane {

/// Makes `destination`, another image, the picture in front of g_fillLevel, and `mask` its stencil. Where no
/// background is found `destination` becomes a copy of `source`: that is no failure.
/// @param tolerance percent; under 5 leaves the picture as it is and fills the mask with 154
/// @param originalWidth size of the picture as handed in, which chooses the size that the mask is smoothed at
/// 0; 10 when no face stands, with nothing touched. With the crop enabled the face is taken to be in the
/// middle of `source`.
int32 ActionRemoveBackground(const ImageBuffer& source, ImageBuffer& destination, ImageBuffer& mask, int32 tolerance,
                             int32 originalWidth, int32 originalHeight);

/// The removal itself. `face` is in stored rows and may lie anywhere.
/// 0; -60 for a tolerance under 5, a background under a fifth of the picture, a `source` that is no picture of
/// three channels, or exhausted memory: `destination` is of no use then. The mask keeps the state that it had.
int32 RemoveBackground(BackgroundAnalyzer& analyzer, int32 fillLevel, const ImageBuffer& source,
                       ImageBuffer& destination, ImageBuffer& mask, int32 tolerance, bool softenEdges,
                       const FaceRecord& face, int32 originalWidth, int32 originalHeight);

} // namespace orvane
