// The crop and the output scaling once more, step by step and pixel by pixel.
#pragma once

#include "actions/action_settings.h"
#include "detect/candidates.h"
#include "image/image_buffer.h"
#include "image/result_codes.h"
#include "tests/reference/resize.h"

#include <cmath>

namespace orvane::test::reference {

/// The crop of `face`; a size is 0 or below where nothing is left. For sizes that int32 holds easily.
inline ImageRect CropRect(const FaceRecord& face, double widthFactor, double heightFactor, ImageSize picture) {
    int32 left = static_cast<int32>(face.centreX - face.faceWidth * 0.5 + 0.5);
    int32 top = static_cast<int32>(face.centreY - face.faceHeight * 0.5 + 0.5);

    double a = face.faceWidth * widthFactor * 3.0;
    if (!(a < picture.width)) a = picture.width;
    int32 cw = static_cast<int32>(a + 0.5);
    const int32 dW = cw - face.faceWidth;
    if (cw <= 1) cw = 1;
    double b = face.faceHeight * heightFactor * 3.0;
    if (!(b < picture.height)) b = picture.height;
    int32 ch = static_cast<int32>(b + 0.5);
    const int32 dH = ch - face.faceHeight;
    if (ch <= 1) ch = 1;

    left += static_cast<int32>(dW * -0.5);
    top += static_cast<int32>(dH * -0.5);
    if (left < 1) left = 1;
    if (top < 1) top = 1;
    cw -= cw % 4;
    if (left + cw >= picture.width) {
        cw = picture.width - left;
        cw -= cw % 4;
    }
    if (top + ch >= picture.height) ch = picture.height - top;
    return {left, top, cw, ch};
}

/// The crop of g_faceRecord by the present factors.
inline int32 FaceCrop(const ImageBuffer& source, ImageBuffer& destination) {
    if (g_faceRecord.faceHeight == 0 || g_faceRecord.faceWidth == 0) return kNoFace;
    const ImageRect crop = CropRect(g_faceRecord, g_cropWidthFactor, g_cropHeightFactor, source.Size());
    if (!destination.Create(std::max(crop.width, 0), std::max(crop.height, 0), 3, kDepth8u, 0)) return kOutOfMemory;
    for (int32 y = 0; y < crop.height; ++y) {
        for (int32 x = 0; x < 3 * crop.width; ++x) {
            RowAt(destination.data, destination.Step(), y)[x] =
                RowAt(source.data, source.Step(), crop.y + y)[3 * crop.x + x];
        }
    }
    return kSuccess;
}

inline Plane<uint8> PlaneOf(const ImageBuffer& picture) {
    Plane<uint8> plane(picture.width * picture.channels, picture.height, 0, 0, 0);
    for (int32 y = 0; y < picture.height; ++y) {
        for (int32 x = 0; x < plane.RowElements(); ++x) plane.At(x, y) = RowAt(picture.data, picture.Step(), y)[x];
    }
    return plane;
}

/// Scales to `output`, which takes the picture's proportions first.
inline int32 OutputScaling(const ImageBuffer& source, ImageSize& output, ImageBuffer& destination) {
    if (source.width < 1 || source.height < 1) { // a sheet without a picture
        if (!destination.Create(output.width, output.height, source.channels, kDepth8u, 0)) return kOutOfMemory;
        destination.Fill(g_fillLevel);
        return kStepFailed;
    }
    const double requested = static_cast<double>(output.width) / output.height;
    const float pictureAspect = static_cast<float>(static_cast<double>(source.width) / source.height);
    if (requested > pictureAspect) {
        output.height = static_cast<int32>(output.width / static_cast<double>(pictureAspect) + 0.5);
    } else if (requested < pictureAspect) {
        output.width = static_cast<int32>(output.height * static_cast<double>(pictureAspect) + 0.5);
    }
    const double fx = static_cast<double>(source.width) / output.width;
    const double fy = static_cast<double>(source.height) / output.height;
    const double scale = 1 / std::min(fx, fy);

    const Plane<uint8> from = PlaneOf(source);
    Plane<uint8> to(output.width * source.channels, output.height, 0, 0, 0);
    to.FillRegion(static_cast<uint8>(g_fillLevel));
    const Geometry geometry =
        MakeGeometry(source.Size(), {0, 0, source.width, source.height}, output, scale, scale, source.channels);
    Resize(from, to, geometry, scale < 1.0 ? kBoxAverage : kCubic);

    if (!destination.Create(output.width, output.height, source.channels, kDepth8u, 0)) return kOutOfMemory;
    for (int32 y = 0; y < output.height; ++y) {
        for (int32 x = 0; x < to.RowElements(); ++x) {
            RowAt(destination.data, destination.Step(), y)[x] = to.At(x, y);
        }
    }
    return kSuccess;
}

} // namespace orvane::test::reference
