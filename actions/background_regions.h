// From background colours to background: the subject hangs together with the face, the background with the
// picture's upper right corner.
#pragma once

#include "actions/background_analyzer.h"

namespace orvane {

/// Makes `mask` anew: 255 for the subject of `source`, a picture of three channels, 0 for the background, 100 for
/// what is neither.
/// @param face in stored rows; it may lie anywhere
/// True when the background is large enough to be one; false as well without storage.
bool BuildRegionMask(const ImageBuffer& source, ImageBuffer& mask, const BackgroundAnalyzer& analyzer, int32 tolerance,
                     ImageRect face);

/// Takes the core of the face, the rectangle from (left, top) to before (right, bottom), for unclassified, and
/// what hangs together with its middle, diagonals too, for the subject (255). All else becomes 100. What
/// lies of the core beyond the mask is left out; a middle beyond it reaches nothing. False, with nothing done,
/// without memory to work in.
bool KeepFaceCore(ImageBuffer& mask, int32 left, int32 top, int32 right, int32 bottom);

/// Makes what hangs together with the upper right corner, without diagonals, background (0), whatever it is.
/// True when that is a fifth of the mask or more. Nothing hangs together in a mask under 3 pixels a side.
bool ClearCornerRegion(ImageBuffer& mask);

} // namespace orvane
