// The gradient filters. Each is separable: the column kernel runs over a tile of a row into a short
// line on the stack, the row kernel over that line. No store is needed beside it.
#include "primitives/edge.h"

#include "primitives/row_kernels.h"

#include <algorithm>
#include <array>

namespace orvane::generic {
namespace {

constexpr int32 kLongestKernel = 5;

/// Entries of a kernel, and what they make of a flat plane of ones.
struct KernelShape {
    int32 entries;
    int32 gain;
};
constexpr KernelShape kShapes[kGradientKernels] = {{3, 0}, {3, 4}, {3, 16}, {5, 0}, {5, 16}};

struct Planes {
    const uint8* src;
    int32 srcStep;
    int16* dst;
    int32 dstStep;
    ImageSize roi;
    bool constantBorder;
    uint8 borderValue;
};

/// Both kernels have as many entries. The gains keep every sum inside 16 bits.
void Filter(const Planes& p, GradientKernel column, GradientKernel row) {
    const RowKernels& kernels = CurrentRowKernels();
    const int32 entries = kShapes[column].entries;
    const int32 radius = entries / 2;
    constexpr int32 kTile = 512;
    std::array<uint8, kTile + kLongestKernel> beyond;
    std::array<int16, kTile + kLongestKernel> line;
    beyond.fill(p.borderValue);
    const auto beyondSum = static_cast<int16>(kShapes[column].gain * p.borderValue);

    for (int32 y = 0; y < p.roi.height; ++y) {
        int16* out = RowAt(p.dst, p.dstStep, y);
        for (int32 left = 0; left < p.roi.width; left += kTile) {
            const int32 count = std::min(kTile, p.roi.width - left);
            // line[i] stands for column left - radius + i; from..to of these lie inside the region.
            const int32 from = std::max(0, radius - left);
            const int32 to = std::min(count + 2 * radius, p.roi.width - left + radius);
            const uint8* rows[kLongestKernel];
            for (int32 k = 0; k < entries; ++k) {
                const int64 wanted = int64{y} + k - radius;
                const auto inside = static_cast<int32>(std::clamp<int64>(wanted, 0, p.roi.height - 1));
                rows[k] = p.constantBorder && wanted != inside
                              ? beyond.data()
                              : RowAt(p.src, p.srcStep, inside) + (left - radius + from);
            }
            kernels.columnSums[column](rows, line.data() + from, to - from);
            std::fill_n(line.data(), from, p.constantBorder ? beyondSum : line[from]);
            std::fill(line.data() + to, line.data() + count + std::ptrdiff_t{2} * radius,
                      p.constantBorder ? beyondSum : line[to - 1]);
            kernels.rowSums[row](line.data(), out + left, count);
        }
    }
}

int32 CheckPlanes(const uint8* src, int32 srcStep, const int16* dst, int32 dstStep, ImageSize roi, int32 borderType,
                  const uint8* buffer) {
    if (src == nullptr || dst == nullptr || buffer == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (srcStep < roi.width || dstStep < int64{2} * roi.width) return kStepTooSmall;
    if (dstStep % 2 != 0) return kStepNotMultiple;
    if (borderType < kBorderConstant || borderType > kLastBorderType) return kBadArgument;
    return kOk;
}

bool IsMaskCode(int32 code) { return code == kMask3x3 || code == kMask5x5; }

/// The filters keep their line on the stack; a size of 0 could not be allocated.
int32 ReportBufferSize(ImageSize roi, int32 maskCode, int32* size) {
    if (size == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (!IsMaskCode(maskCode)) return kBadMaskSize;
    *size = 1;
    return kOk;
}

} // namespace

int32 primFilterSobelHorizBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                          int32 maskCode, int32 borderType, uint8 borderValue, uint8* buffer) {
    if (const int32 status = CheckPlanes(src, srcStep, dst, dstStep, roi, borderType, buffer)) return status;
    if (!IsMaskCode(maskCode)) return kBadMaskSize;
    const Planes planes = {src, srcStep, dst, dstStep, roi, borderType == kBorderConstant, borderValue};
    maskCode == kMask3x3 ? Filter(planes, kDifference3, kSobelSmooth3) : Filter(planes, kDifference5, kSobelSmooth5);
    return kOk;
}

int32 primFilterSobelNegVertBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                            int32 maskCode, int32 borderType, uint8 borderValue, uint8* buffer) {
    if (const int32 status = CheckPlanes(src, srcStep, dst, dstStep, roi, borderType, buffer)) return status;
    if (!IsMaskCode(maskCode)) return kBadMaskSize;
    const Planes planes = {src, srcStep, dst, dstStep, roi, borderType == kBorderConstant, borderValue};
    maskCode == kMask3x3 ? Filter(planes, kSobelSmooth3, kDifference3) : Filter(planes, kSobelSmooth5, kDifference5);
    return kOk;
}

int32 primFilterScharrHorizBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                           int32 borderType, uint8 borderValue, uint8* buffer) {
    if (const int32 status = CheckPlanes(src, srcStep, dst, dstStep, roi, borderType, buffer)) return status;
    Filter({src, srcStep, dst, dstStep, roi, borderType == kBorderConstant, borderValue}, kDifference3, kScharrSmooth3);
    return kOk;
}

int32 primFilterScharrVertBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                          int32 borderType, uint8 borderValue, uint8* buffer) {
    if (const int32 status = CheckPlanes(src, srcStep, dst, dstStep, roi, borderType, buffer)) return status;
    Filter({src, srcStep, dst, dstStep, roi, borderType == kBorderConstant, borderValue}, kScharrSmooth3, kDifference3);
    return kOk;
}

int32 primFilterSobelHorizGetBufferSize(ImageSize roi, int32 maskCode, int32* size) {
    return ReportBufferSize(roi, maskCode, size);
}

int32 primFilterSobelNegVertGetBufferSize(ImageSize roi, int32 maskCode, int32* size) {
    return ReportBufferSize(roi, maskCode, size);
}

int32 primFilterScharrHorizGetBufferSize(ImageSize roi, int32* size) { return ReportBufferSize(roi, kMask3x3, size); }

int32 primFilterScharrVertGetBufferSize(ImageSize roi, int32* size) { return ReportBufferSize(roi, kMask3x3, size); }

} // namespace orvane::generic
