// The gradient filters. Each is separable: the column kernel runs over a tile of a row into a short
// line on the stack, the row kernel over that line. No store is needed beside it.
#include "primitives/edge.h"

#include <algorithm>
#include <array>

namespace orvane::generic {
namespace {

using Kernel3 = std::array<int32, 3>;
using Kernel5 = std::array<int32, 5>;

constexpr Kernel3 kDifference3 = {-1, 0, 1};
constexpr Kernel3 kSobelSmooth3 = {1, 2, 1};
constexpr Kernel3 kScharrSmooth3 = {3, 10, 3};
constexpr Kernel5 kDifference5 = {-1, -2, 0, 2, 1};
constexpr Kernel5 kSobelSmooth5 = {1, 4, 6, 4, 1};

struct Planes {
    const uint8* src;
    int32 srcStep;
    int16* dst;
    int32 dstStep;
    ImageSize roi;
    bool constantBorder;
    uint8 borderValue;
};

/// Kernel entry k meets the element at offset k - radius. The gains keep every sum inside 16 bits.
template <auto Column, auto Row>
void Filter(const Planes& p) {
    static_assert(Column.size() == Row.size());
    constexpr auto kEntries = static_cast<int32>(Column.size());
    constexpr int32 kRadius = kEntries / 2;
    constexpr int32 kTile = 512;
    std::array<uint8, kTile + 2 * kRadius> beyond;
    std::array<int16, kTile + 2 * kRadius> line;
    beyond.fill(p.borderValue);
    int32 columnGain = 0;
    for (const int32 entry : Column) columnGain += entry;
    const auto beyondSum = static_cast<int16>(columnGain * p.borderValue);

    for (int32 y = 0; y < p.roi.height; ++y) {
        int16* out = RowAt(p.dst, p.dstStep, y);
        for (int32 left = 0; left < p.roi.width; left += kTile) {
            const int32 count = std::min(kTile, p.roi.width - left);
            // line[i] stands for column left - kRadius + i; from..to of these lie inside the region.
            const int32 from = std::max(0, kRadius - left);
            const int32 to = std::min(count + 2 * kRadius, p.roi.width - left + kRadius);
            const uint8* rows[kEntries];
            for (int32 k = 0; k < kEntries; ++k) {
                const int64 row = int64{y} + k - kRadius;
                const auto inside = static_cast<int32>(std::clamp<int64>(row, 0, p.roi.height - 1));
                rows[k] = p.constantBorder && row != inside ? beyond.data()
                                                            : RowAt(p.src, p.srcStep, inside) + (left - kRadius + from);
            }
            for (int32 i = 0; i < to - from; ++i) {
                int32 sum = 0;
                for (int32 k = 0; k < kEntries; ++k) sum += Column[k] * rows[k][i];
                line[from + i] = static_cast<int16>(sum);
            }
            std::fill_n(line.data(), from, p.constantBorder ? beyondSum : line[from]);
            std::fill(line.data() + to, line.data() + count + 2 * kRadius, p.constantBorder ? beyondSum : line[to - 1]);
            for (int32 i = 0; i < count; ++i) {
                int32 sum = 0;
                for (int32 k = 0; k < kEntries; ++k) sum += Row[k] * line[i + k];
                out[left + i] = static_cast<int16>(sum);
            }
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
    maskCode == kMask3x3 ? Filter<kDifference3, kSobelSmooth3>(planes) : Filter<kDifference5, kSobelSmooth5>(planes);
    return kOk;
}

int32 primFilterSobelNegVertBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                            int32 maskCode, int32 borderType, uint8 borderValue, uint8* buffer) {
    if (const int32 status = CheckPlanes(src, srcStep, dst, dstStep, roi, borderType, buffer)) return status;
    if (!IsMaskCode(maskCode)) return kBadMaskSize;
    const Planes planes = {src, srcStep, dst, dstStep, roi, borderType == kBorderConstant, borderValue};
    maskCode == kMask3x3 ? Filter<kSobelSmooth3, kDifference3>(planes) : Filter<kSobelSmooth5, kDifference5>(planes);
    return kOk;
}

int32 primFilterScharrHorizBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                           int32 borderType, uint8 borderValue, uint8* buffer) {
    if (const int32 status = CheckPlanes(src, srcStep, dst, dstStep, roi, borderType, buffer)) return status;
    Filter<kDifference3, kScharrSmooth3>({src, srcStep, dst, dstStep, roi, borderType == kBorderConstant, borderValue});
    return kOk;
}

int32 primFilterScharrVertBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                          int32 borderType, uint8 borderValue, uint8* buffer) {
    if (const int32 status = CheckPlanes(src, srcStep, dst, dstStep, roi, borderType, buffer)) return status;
    Filter<kScharrSmooth3, kDifference3>({src, srcStep, dst, dstStep, roi, borderType == kBorderConstant, borderValue});
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
