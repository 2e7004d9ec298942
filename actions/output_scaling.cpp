#include "actions/output_scaling.h"

#include "actions/action_settings.h"
#include "actions/assertion.h"
#include "image/result_codes.h"
#include "primitives/primitives.h"
#include "primitives/trunc.h"

#include <algorithm>

namespace orvane {
namespace {

/// Enlarges one side of the output until it has the picture's proportions.
void FitOutputTo(ImageSize picture) {
    const double requested = static_cast<double>(g_outputWidth) / g_outputHeight;
    const auto pictureAspect = static_cast<float>(static_cast<double>(picture.width) / picture.height);
    if (requested > pictureAspect) {
        g_outputHeight = TruncToInt32(static_cast<double>(g_outputWidth) / pictureAspect + 0.5);
    } else if (requested < pictureAspect) {
        g_outputWidth = TruncToInt32(static_cast<double>(g_outputHeight) * pictureAspect + 0.5);
    }
}

/// What becomes of a picture from which a turn left nothing: a host that is told of success gets an output.
int32 GiveBlankSheet(const ImageBuffer& source, ImageBuffer& destination) {
    if (!destination.Create(g_outputWidth, g_outputHeight, source.channels, kDepth8u, 0)) return kOutOfMemory;
    destination.Fill(g_fillLevel);
    PrintAssertion(kBadSize);
    return kStepFailed;
}

} // namespace

OutputScaling PlanOutputScaling(ImageSize picture) {
    FitOutputTo(picture);
    const double fx = static_cast<double>(picture.width) / g_outputWidth;
    const double fy = static_cast<double>(picture.height) / g_outputHeight;
    // The larger enlargement of the two serves both axes; what overhangs is cut by the resize.
    const double scale = 1.0 / std::min(fx, fy);
    return {{g_outputWidth, g_outputHeight}, scale, scale < 1.0 ? kBoxAverage : kCubic, g_fillLevel};
}

int32 ScalePart(const ImageBuffer& source, const OutputScaling& scaling, const ImageRect& part,
                ImageBuffer& destination) {
    destination.Fill(scaling.fillLevel);
    const int32 status = ResizePart_8u_C3(source.data, source.Size(), source.Step(), destination.data,
                                          destination.Step(), scaling.size, part, scaling.scale, scaling.interpolation);
    if (status == kOk || status == kNothingToWrite) return kSuccess; // an overhang may be all of the part
    PrintAssertion(status);
    return kStepFailed;
}

int32 ActionOutputScaling(const ImageBuffer& source, ImageBuffer& destination) {
    if (source.channels < 1) return kOutOfMemory; // there never was a picture, nor is there now
    if (source.width < 1 || source.height < 1) return GiveBlankSheet(source, destination);
    const OutputScaling scaling = PlanOutputScaling(source.Size());
    if (!destination.Create(scaling.size.width, scaling.size.height, source.channels, kDepth8u, 0)) return kOutOfMemory;
    destination.Fill(scaling.fillLevel);
    const auto resize = source.channels == 3 ? primResize_8u_C3 : primResize_8u_C1;
    const int32 status =
        resize(source.data, source.Size(), source.Step(), {0, 0, source.width, source.height}, destination.data,
               destination.Step(), destination.Size(), scaling.scale, scaling.scale, scaling.interpolation);
    if (status == kOk) return kSuccess;
    PrintAssertion(status);
    destination.Release(); // a blank sheet must not pass for the picture
    return kStepFailed;
}

} // namespace orvane
