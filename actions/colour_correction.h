// Slot 2 of the pipeline: stretches the contrast, by the same amount in all channels.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

/// Makes `destination`, another image, the contrast-stretched form of `source`. Always 0.
int32 ActionColourCorrection(const ImageBuffer& source, ImageBuffer& destination);

/// The same in place, for a picture that nobody needs as it was.
void CorrectColours(ImageBuffer& image);

/// Maps the levels from `low` to `high` onto 0 to 255, in place: level p becomes the nearest whole number
/// to max(p - low, 0) * 255 / (high - low), limited to 0..255, where the `low` that is subtracted is cut to
/// a byte. Equal bounds make every level above `low` 255, crossed ones make all of them 0. Only pictures of
/// three channels of 8 bits are changed. Always 0.
int32 StretchLevels(ImageBuffer& image, int32 low, int32 high);

} // namespace orvane
