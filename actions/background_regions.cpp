#include "actions/background_regions.h"

#include "actions/assertion.h"
#include "actions/background_colours.h"
#include "actions/plane_painting.h"
#include "primitives/primitives.h"
#include "primitives/trunc.h"

#include <cstdlib>

namespace orvane {
namespace {

constexpr float kSmallestBackground = 0.2F; // of the picture

/// The work buffer of a flood fill.
class FloodBuffer {
public:
    explicit FloodBuffer(ImageSize size) : data_(static_cast<uint8*>(primMalloc(FloodFillUse(size)))) {}
    ~FloodBuffer() { primFree(data_); }
    FloodBuffer(const FloodBuffer&) = delete;
    FloodBuffer& operator=(const FloodBuffer&) = delete;

    uint8* Data() const { return data_; }

private:
    uint8* data_;
};

int64 Distance(int32 a, int32 b) { return std::abs(int64{a} - b); }
int32 Middle(int32 a, int32 b) { return TruncToInt32(static_cast<double>(int64{a} + b) * 0.5); }

} // namespace

bool BuildRegionMask(const ImageBuffer& source, ImageBuffer& mask, const BackgroundAnalyzer& analyzer, int32 tolerance,
                     ImageRect face) {
    if (!MarkAllSamples(source, analyzer, mask, tolerance)) return false;
    const int32 left = TruncToInt32(face.x + 0.3 * face.width);
    const int32 top = TruncToInt32(face.y + 0.12 * face.height);
    const int32 right = TruncToInt32(face.x + 0.7 * face.width);
    const int32 bottom = TruncToInt32(face.y + 0.88 * face.height);
    return KeepFaceCore(mask, left, top, right, bottom) && ClearCornerRegion(mask);
}

bool KeepFaceCore(ImageBuffer& mask, int32 left, int32 top, int32 right, int32 bottom) {
    const FloodBuffer buffer(mask.Size());
    if (buffer.Data() == nullptr) return false;
    ReportStatus(PaintRect(mask, {left, top, Distance(left, right), Distance(top, bottom)}, kMaskUnclassified));
    const ImagePoint seed{Middle(left, right), Middle(top, bottom)};
    ConnectedRegion subject{};
    // A seed beyond the mask is refused by the fill.
    ReportStatus(
        primFloodFill8_8u_C1I(mask.data, mask.Step(), mask.Size(), seed, kMaskSubject, &subject, buffer.Data()));
    ReportStatus(primThresholdVal_8u_C1I(mask.data, mask.Step(), mask.Size(), kMaskSubject, kMaskNeither, kLess));
    return true;
}

bool ClearCornerRegion(ImageBuffer& mask) {
    const FloodBuffer buffer(mask.Size());
    const ImagePoint seed{mask.width - 3, mask.height - 3};
    ConnectedRegion background{};
    ReportStatus(
        primFloodFill4_8u_C1I(mask.data, mask.Step(), mask.Size(), seed, kMaskBackground, &background, buffer.Data()));
    return static_cast<double>(kSmallestBackground) * mask.width * mask.height <= background.area;
}

} // namespace orvane
