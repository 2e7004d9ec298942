// From background colours to background: the subject hangs together with the face, the background with the
// picture's upper right corner.
#pragma once

#include "actions/background_analyzer.h"
#include "primitives/bit_plane.h"

namespace orvane {

/// What the pixels of a picture are: subject, background or neither. What is marked as both is background.
struct RegionMask {
    BitPlane subject, background;

    ImageSize Size() const { return subject.Size(); }

    /// Levels of a row: 255 for the subject, 0 for the background, 100 for what is neither.
    void PaintRow(int32 y, uint8* levels) const;

    /// Makes `mask` anew of all rows; without marks or storage it stays as it is.
    void Paint(ImageBuffer& mask) const;
};

/// Makes the mask of `source`, a picture of three channels.
/// @param mask without planes yet; both have pixels afterwards, or the background has none when memory is exhausted
/// @param face in stored rows; it may lie anywhere
/// True when the background is large enough to be one.
bool BuildRegionMask(const ImageBuffer& source, RegionMask& mask, const BackgroundAnalyzer& analyzer, int32 tolerance,
                     ImageRect face);

/// Takes the core of the face, the rectangle from (left, top) to before (right, bottom), into `others`, the pixels
/// without a background colour, and marks in `subject`, a new plane, what hangs together with its middle, diagonals
/// too. What lies of the core beyond the plane is left out; a middle beyond it reaches nothing. False without memory.
bool KeepFaceCore(BitPlane& others, int32 left, int32 top, int32 right, int32 bottom, BitPlane& subject);

/// Marks in `background`, a new plane, what hangs together with the upper right corner, without diagonals, whether it
/// is subject or not. Nothing hangs together in a plane under 3 pixels a side. True when it is a fifth of the plane or
/// more; false as well without memory, and the plane has no pixels then.
bool ClearCornerRegion(const BitPlane& subject, BitPlane& background);

} // namespace orvane
