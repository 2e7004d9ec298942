#include "actions/face_crop.h"

#include "actions/action_settings.h"
#include "detect/candidates.h"
#include "image/result_codes.h"
#include "primitives/primitives.h"
#include "primitives/trunc.h"

#include <algorithm>

namespace orvane {
namespace {

/// One axis of the crop rectangle.
struct Extent {
    int64 start;
    int64 length;
};

/// Grows the face by the crop factor around its centre, within a picture of `limit` pixels. The first
/// column and the first stored row are never part of a crop.
Extent GrowAroundFace(int32 centre, int32 faceSize, float cropFactor, int32 limit) {
    const int64 faceStart = TruncToInt32(centre - faceSize * 0.5 + 0.5);
    double grown = faceSize * static_cast<double>(cropFactor) * 3.0;
    if (!(grown < limit)) grown = limit;
    const int64 length = TruncToInt32(grown + 0.5);
    // Taken before the length is limited from below.
    const int64 growth = length - faceSize;
    const int64 start = faceStart + TruncToInt32(static_cast<double>(growth) * -0.5);
    return {std::max<int64>(start, 1), std::max<int64>(length, 1)};
}

} // namespace

ImageRect FaceCropRect(ImageSize picture) {
    const FaceRecord& face = g_faceRecord;
    Extent x = GrowAroundFace(face.centreX, face.faceWidth, g_cropWidthFactor, picture.width);
    Extent y = GrowAroundFace(face.centreY, face.faceHeight, g_cropHeightFactor, picture.height);
    x.length -= x.length % 4;
    if (x.start + x.length >= picture.width) {
        x.length = picture.width - x.start;
        x.length -= x.length % 4;
    }
    if (y.start + y.length >= picture.height) y.length = picture.height - y.start;
    return {TruncToInt32(static_cast<double>(x.start)), TruncToInt32(static_cast<double>(y.start)),
            static_cast<int32>(std::max<int64>(x.length, 0)), static_cast<int32>(std::max<int64>(y.length, 0))};
}

int32 ActionFaceCrop(const ImageBuffer& source, ImageBuffer& destination) {
    if (g_faceRecord.faceHeight == 0 || g_faceRecord.faceWidth == 0) return kNoFace;
    const ImageRect crop = FaceCropRect(source.Size());
    if (!destination.Create(crop.width, crop.height, 3, kDepth8u, 0)) return kOutOfMemory;
    if (source.data == nullptr || source.channels != 3 || source.depth != kDepth8u) {
        destination.Fill(g_fillLevel);
        return kCopyFailed;
    }
    // No fill before the copy: it covers the whole of the destination.
    const uint8* corner = RowAt(source.data, source.Step(), crop.y) + std::ptrdiff_t{3} * crop.x;
    const int32 status =
        primCopy_8u_C3(corner, source.Step(), destination.data, destination.Step(), {crop.width, crop.height});
    return status == kOk ? kSuccess : kCopyFailed;
}

} // namespace orvane
