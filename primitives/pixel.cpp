// Operations on single pixels: each row is walked on its own, no neighbour is read.
#include "primitives/pixel.h"

#include "primitives/row_kernels.h"

namespace orvane::generic {
namespace {

template <typename Holds>
void CompareRow(const uint8* src, uint8* dst, int32 width, Holds holds) {
    for (int32 x = 0; x < width; ++x) dst[x] = holds(src[x]) ? 255 : 0;
}

} // namespace

int32 primSetMasked_8u_C1(uint8 value, uint8* dst, int32 dstStep, ImageSize roi, const uint8* mask, int32 maskStep) {
    if (dst == nullptr || mask == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (dstStep < 1 || maskStep < 1) return kStepTooSmall;
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) {
        kernels.setMasked(value, RowAt(dst, dstStep, y), RowAt(mask, maskStep, y), roi.width);
    }
    return kOk;
}

int32 primCopyMasked_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi, const uint8* mask,
                           int32 maskStep) {
    if (src == nullptr || dst == nullptr || mask == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) {
        kernels.copyMasked(RowAt(src, srcStep, y), RowAt(dst, dstStep, y), RowAt(mask, maskStep, y), roi.width);
    }
    return kOk;
}

int32 primCopy_8u_C3P3(const uint8* src, int32 srcStep, uint8* const dst[3], int32 dstStep, ImageSize roi) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (dst[0] == nullptr || dst[1] == nullptr || dst[2] == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) {
        uint8* const planes[3] = {RowAt(dst[0], dstStep, y), RowAt(dst[1], dstStep, y), RowAt(dst[2], dstStep, y)};
        kernels.split(RowAt(src, srcStep, y), planes, roi.width);
    }
    return kOk;
}

int32 primSwapChannels_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi,
                             const int32 order[3]) {
    if (src == nullptr || dst == nullptr || order == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (srcStep < 1 || dstStep < 1) return kStepTooSmall;
    for (int32 i = 0; i < 3; ++i) {
        if (order[i] < 0 || order[i] > 2) return kBadChannelOrder;
    }
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) {
        kernels.swap(RowAt(src, srcStep, y), RowAt(dst, dstStep, y), order, roi.width);
    }
    return kOk;
}

int32 primAnd_8u_C1I(const uint8* src, int32 srcStep, uint8* srcDst, int32 srcDstStep, ImageSize roi) {
    if (src == nullptr || srcDst == nullptr) return kNullPointer;
    if (srcStep < 1 || srcDstStep < 1) return kStepTooSmall;
    if (!HasPixels(roi)) return kBadSize;
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) {
        kernels.bitAnd(RowAt(src, srcStep, y), RowAt(srcDst, srcDstStep, y), roi.width);
    }
    return kOk;
}

int32 primThresholdLTValGTVal_8u_C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi,
                                    uint8 thresholdLT, uint8 valueLT, uint8 thresholdGT, uint8 valueGT) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (srcStep < 1 || dstStep < 1) return kStepTooSmall;
    if (thresholdGT < thresholdLT) return kThresholdOrder;
    const RowKernels& kernels = CurrentRowKernels();
    const ByteLimits limits{thresholdLT, valueLT, thresholdGT, valueGT};
    for (int32 y = 0; y < roi.height; ++y) {
        kernels.limit(RowAt(src, srcStep, y), RowAt(dst, dstStep, y), limits, roi.width);
    }
    return kOk;
}

int32 primThresholdVal_8u_C1I(uint8* srcDst, int32 step, ImageSize roi, uint8 threshold, uint8 value, int32 compareOp) {
    if (compareOp != kLess && compareOp != kGreater) return kUnknownCode;
    if (srcDst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (step < 1) return kStepTooSmall;
    const RowKernels& kernels = CurrentRowKernels();
    // No byte lies below 0 or above 255.
    const ByteLimits limits =
        compareOp == kLess ? ByteLimits{threshold, value, 255, 0} : ByteLimits{0, 0, threshold, value};
    for (int32 y = 0; y < roi.height; ++y) {
        uint8* row = RowAt(srcDst, step, y);
        kernels.limit(row, row, limits, roi.width);
    }
    return kOk;
}

int32 primCompareC_8u_C1(const uint8* src, int32 srcStep, uint8 value, uint8* dst, int32 dstStep, ImageSize roi,
                         int32 compareOp) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (srcStep < 1 || dstStep < 1) return kStepTooSmall;
    if (!HasPixels(roi)) return kBadSize;
    for (int32 y = 0; y < roi.height; ++y) {
        const uint8* from = RowAt(src, srcStep, y);
        uint8* to = RowAt(dst, dstStep, y);
        switch (compareOp) {
        case kLess:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v < value; });
            break;
        case kLessOrEqual:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v <= value; });
            break;
        case kEqual:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v == value; });
            break;
        case kGreaterOrEqual:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v >= value; });
            break;
        case kGreater:
            CompareRow(from, to, roi.width, [value](uint8 v) { return v > value; });
            break;
        default:
            return kOk;
        }
    }
    return kOk;
}

int32 primRGBToGray_8u_C3C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) kernels.grey(RowAt(src, srcStep, y), RowAt(dst, dstStep, y), roi.width);
    return kOk;
}

int32 primRGBToHSV_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) kernels.hsv(RowAt(src, srcStep, y), RowAt(dst, dstStep, y), roi.width);
    return kOk;
}

} // namespace orvane::generic
