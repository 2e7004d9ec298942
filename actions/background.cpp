#include "actions/background.h"

#include "actions/action_settings.h"
#include "actions/background_refine.h"
#include "actions/background_regions.h"
#include "image/result_codes.h"
#include "primitives/trunc.h"

namespace orvane {
namespace {

constexpr int32 kSmallestTolerance = 5;
constexpr int32 kPasses = 2;

int32 Middle(int32 length) { return TruncToInt32((length + 1.0) * 0.5); }

/// Where a side of `length` around a centre starts.
int32 StartOf(int32 centre, int32 length) {
    return TruncToInt32(static_cast<double>(int64{centre} + TruncToInt32(-0.5 * length)));
}

bool IsPicture(const ImageBuffer& image) {
    return image.data != nullptr && image.channels == 3 && image.depth == kDepth8u && image.planar == 0;
}

} // namespace

int32 ActionRemoveBackground(const ImageBuffer& source, ImageBuffer& destination, ImageBuffer& mask, int32 tolerance,
                             int32 originalWidth, int32 originalHeight) {
    FaceRecord face = g_faceRecord;
    if (face.faceWidth == 0 || face.faceHeight == 0) return kNoFace;
    if (g_actionEnabled[kSlotCrop] != 0) { // the picture was cut around the face, which keeps its size
        face.centreX = Middle(source.width);
        face.centreY = Middle(source.height);
    }
    BackgroundAnalyzer analyzer;
    const int32 status = RemoveBackground(analyzer, g_fillLevel, source, destination, mask, tolerance, true, face,
                                          originalWidth, originalHeight);
    if (status != kSuccess) destination.CopyFrom(source);
    return kSuccess;
}

int32 RemoveBackground(BackgroundAnalyzer& analyzer, int32 fillLevel, const ImageBuffer& source,
                       ImageBuffer& destination, ImageBuffer& mask, int32 tolerance, bool softenEdges,
                       const FaceRecord& face, int32 originalWidth, int32 originalHeight) {
    analyzer.fillLevel = fillLevel;
    if (tolerance < kSmallestTolerance || !IsPicture(source)) {
        mask.Fill(kMaskUnclassified);
        return kNoPicture;
    }
    destination.Remake(source.width, source.height, 3, kDepth8u);
    analyzer.ComputeSamplePoints(source.width, source.height);
    const ImageRect rect{StartOf(face.centreX, face.faceWidth), StartOf(face.centreY, face.faceHeight), face.faceWidth,
                         face.faceHeight};
    RegionMask regions;
    if (!BuildRegionMask(source, regions, analyzer, tolerance, rect)) {
        regions.Paint(mask);
        return kNoPicture;
    }
    const bool done = RefineAndComposite(source, destination, analyzer, regions, mask, kPasses, softenEdges,
                                         originalWidth, originalHeight);
    return done ? kSuccess : kNoPicture;
}

} // namespace orvane
