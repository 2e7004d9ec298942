// From the mask of regions to the picture on its flat field: the outline is smoothed on a copy of the mask
// of another size, the mask then cuts the picture out.
#pragma once

#include "actions/background_regions.h"

namespace orvane {

/// Takes the background up to 4 * passes work-size pixels into the subject, blurs, and copies the source's
/// pixels to `destination` wherever the mask is not 0 then; elsewhere stands the analyzer's fill level.
/// @param regions of the source
/// @param mask made anew: the final grey mask
/// @param softenEdges scales the mask back linearly instead of by the nearest pixel
/// @param originalWidth of the picture that was handed in, likewise originalHeight; they choose the work size:
///                300 by 300 when one is under 300, else one and a half of them when the width is under
///                800 or the height under 600, else 0.3033333 of them
/// False without storage; `destination` and `mask` are of no use then.
bool RefineAndComposite(const ImageBuffer& source, ImageBuffer& destination, const BackgroundAnalyzer& analyzer,
                        const RegionMask& regions, ImageBuffer& mask, int32 passes, bool softenEdges,
                        int32 originalWidth, int32 originalHeight);

/// A new image, `thickness` pixels larger on each side, with a frame of `value` around the pixels of `image`.
/// One channel of 8 or 0x110; anything else gives an image of zeros. Without storage where there is none.
ImageBuffer AddBorder(const ImageBuffer& image, int32 thickness, int32 value);

/// Sets the outermost rows and columns of a one-channel 8-bit image: `thickness` of the first ones and,
/// counted from the last one outward, those of the last that the image has. So it is a ring for a thickness
/// of 1. Any other image stays as it is.
void FillBorderRing(ImageBuffer& image, int32 thickness, uint8 value);

} // namespace orvane
