#include "actions/background_refine.h"

#include "actions/assertion.h"
#include "actions/plane_painting.h"
#include "primitives/heap_array.h"
#include "primitives/primitives.h"
#include "primitives/resize_frame.h"
#include "primitives/row_kernels.h"
#include "primitives/trunc.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr float kLargePictureFactor = 0.3033333F;

ImageSize WorkSize(int32 originalWidth, int32 originalHeight) {
    if (originalWidth < 300 || originalHeight < 300) return {300, 300};
    if (originalWidth < 800 || originalHeight < 600) {
        return {TruncToInt32(1.5 * originalWidth), TruncToInt32(1.5 * originalHeight)};
    }
    const double factor = kLargePictureFactor;
    return {TruncToInt32(originalWidth * factor + 0.5), TruncToInt32(originalHeight * factor + 0.5)};
}

/// A plane inside a frame that the filters may read but not change.
struct FramedPlane {
    uint8* first;
    int32 step;
    ImageSize size;

    void ErodeDiagonally() const {
        constexpr uint8 kDiagonals[9] = {1, 0, 1, 0, 1, 0, 1, 0, 1};
        ReportStatus(primErode_8u_C1I(first, step, size, kDiagonals, {3, 3}, {1, 1}));
    }
    void ErodeCrosswise() const {
        constexpr uint8 kPlus[9] = {0, 1, 0, 1, 1, 1, 0, 1, 0};
        ReportStatus(primErode_8u_C1I(first, step, size, kPlus, {3, 3}, {1, 1}));
    }
    void ErodeFully() const { ReportStatus(primErode3x3_8u_C1I(first, step, size)); }
    void Blur() const { ReportStatus(primFilterBox_8u_C1I(first, step, size, {3, 3}, {1, 1})); }
};

/// Smooths the mask at the work size. The frame keeps the erosion from eating inward from the picture's edges;
/// for the blur it counts as background.
void Smooth(ImageBuffer& framed, ImageSize size, int32 passes) {
    const FramedPlane plane{framed.data + framed.Step() + 1, framed.Step(), size};
    FillBorderRing(framed, 1, 255);
    for (int32 i = 0; i < passes; ++i) {
        plane.ErodeDiagonally();
        plane.ErodeCrosswise();
        plane.ErodeFully();
    }
    plane.ErodeDiagonally();
    plane.ErodeCrosswise();
    FillBorderRing(framed, 1, 0);
    for (int32 i = 0; i < 6 * passes + 1; ++i) plane.Blur();
}

/// Levels of the nearest pixels. Only rows that are asked for are painted.
bool ScaleRegions(const RegionMask& regions, double xFactor, double yFactor, ImageSize size, ImageBuffer& scaled) {
    HeapArray<int32> rows, columns;
    HeapArray<uint8> levels;
    if (!rows.Allocate(size.height) || !columns.Allocate(size.width) || !levels.Allocate(regions.Size().width) ||
        !scaled.Create(size.width, size.height, 1, kDepth8u, 0)) {
        return false;
    }
    const int32 height = NearestPositions(regions.Size().height, yFactor, size.height, rows.data());
    const int32 width = NearestPositions(regions.Size().width, xFactor, size.width, columns.data());
    for (int32 y = 0; y < height; ++y) {
        regions.PaintRow(rows[y], levels.data());
        uint8* to = RowAt(scaled.data, scaled.Step(), y);
        for (int32 x = 0; x < width; ++x) to[x] = levels[columns[x]];
    }
    return true;
}

bool RefineMask(const RegionMask& regions, ImageBuffer& mask, int32 passes, bool softenEdges, ImageSize work) {
    const ImageSize size = regions.Size();
    const double xFactor = static_cast<double>(work.width) / size.width;
    const double yFactor = static_cast<double>(work.height) / size.height;
    ImageBuffer scaled;
    if (!ScaleRegions(regions, xFactor, yFactor, work, scaled)) return false;
    ImageBuffer framed = AddBorder(scaled, 1, 0);
    if (framed.data == nullptr || !mask.Remake(size.width, size.height, 1, kDepth8u)) return false;
    Smooth(framed, work, passes);
    ReportStatus(primResize_8u_C1(framed.data + framed.Step() + 1, work, framed.Step(), {0, 0, work.width, work.height},
                                  mask.data, mask.Step(), mask.Size(), 1.0 / xFactor, 1.0 / yFactor,
                                  softenEdges ? kLinear : kNearest));
    return true;
}

void PutOnFlatField(const ImageBuffer& source, ImageBuffer& destination, int32 fillLevel, const ImageBuffer& mask) {
    const auto level = static_cast<uint8>(std::clamp(fillLevel, 0, 255));
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < source.height; ++y) {
        kernels.cutOut(RowAt(source.data, source.Step(), y), RowAt(destination.data, destination.Step(), y),
                       RowAt(mask.data, mask.Step(), y), level, source.width);
    }
}

} // namespace

bool RefineAndComposite(const ImageBuffer& source, ImageBuffer& destination, const BackgroundAnalyzer& analyzer,
                        const RegionMask& regions, ImageBuffer& mask, int32 passes, bool softenEdges,
                        int32 originalWidth, int32 originalHeight) {
    if (destination.data == nullptr) return false;
    if (!RefineMask(regions, mask, passes, softenEdges, WorkSize(originalWidth, originalHeight))) return false;
    PutOnFlatField(source, destination, analyzer.fillLevel, mask);
    return true;
}

ImageBuffer AddBorder(const ImageBuffer& image, int32 thickness, int32 value) {
    ImageBuffer framed;
    const int64 bothSides = int64{thickness} * 2;
    const int64 width = image.width + bothSides, height = image.height + bothSides;
    if (width < 1 || height < 1 || width > kMaxImageSide || height > kMaxImageSide) return framed;
    framed.Create(static_cast<int32>(width), static_cast<int32>(height), image.channels, image.depth, 0);
    if (framed.data == nullptr || image.channels != 1) return framed;
    if (image.depth == kDepth8u) {
        ReportStatus(primCopyConstBorder_8u_C1(image.data, image.Step(), image.Size(), framed.data, framed.Step(),
                                               framed.Size(), thickness, thickness, static_cast<uint8>(value)));
    } else if (image.depth == kDepth16s) {
        ReportStatus(primCopyConstBorder_16s_C1(reinterpret_cast<const int16*>(image.data), image.Step(), image.Size(),
                                                reinterpret_cast<int16*>(framed.data), framed.Step(), framed.Size(),
                                                thickness, thickness, static_cast<int16>(value)));
    }
    return framed;
}

void FillBorderRing(ImageBuffer& image, int32 thickness, uint8 value) {
    if (image.channels != 1 || image.depth != kDepth8u) return;
    const int32 w = image.width, h = image.height;
    ReportStatus(PaintRect(image, {0, 0, w, thickness}, value));
    ReportStatus(PaintRect(image, {0, int64{h} - 1, w, thickness}, value));
    ReportStatus(PaintRect(image, {0, 0, thickness, h}, value));
    ReportStatus(PaintRect(image, {int64{w} - 1, 0, thickness, h}, value));
}

} // namespace orvane
