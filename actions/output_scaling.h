// Slot 5 of the pipeline: scales the picture to the output size, undistorted and uncut.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

/// How a picture is scaled to an output.
struct OutputScaling {
    ImageSize size;      // of the output
    double scale;        // of both axes; what overhangs is cut
    int32 interpolation; // box average when the picture shrinks, else cubic
    int32 fillLevel;     // of what the scaled picture leaves open
};

/// The scaling of a picture with pixels to g_outputWidth by g_outputHeight. Where the proportions differ one of these
/// two is enlarged, and stays so until the next SetOutputGeometry.
OutputScaling PlanOutputScaling(ImageSize picture);

/// Makes the rectangle `part` of the output of `source`, a picture of three channels, in `destination`, which has
/// storage for 3 channels of the part's size. 0; -40 when the resize fails.
int32 ScalePart(const ImageBuffer& source, const OutputScaling& scaling, const ImageRect& part,
                ImageBuffer& destination);

/// Scales `source` as PlanOutputScaling says. 0; -50 without storage; -40 when the resize fails, with `destination`
/// without storage.
int32 ActionOutputScaling(const ImageBuffer& source, ImageBuffer& destination);

} // namespace orvane
