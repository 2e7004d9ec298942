// Slot 5 of the pipeline: scales the picture to the output size, undistorted and uncut.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

/// Scales `source` to g_outputWidth by g_outputHeight. Where the proportions differ one of these two is
/// enlarged, and stays so until the next SetOutputGeometry. Box average when the picture shrinks, cubic
/// otherwise. 0; -50 without storage; -40 when the resize fails, with `destination` without storage.
int32 ActionOutputScaling(const ImageBuffer& source, ImageBuffer& destination);

} // namespace orvane
