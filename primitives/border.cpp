// Constant borders. Rows are handled as bytes: a step need not be a multiple of the element's size.
#include "primitives/border.h"

#include <cstring>

namespace orvane::generic {
namespace {

/// Writes `count` elements; the place behind them.
template <typename T>
uint8* PutValues(uint8* to, T value, int64 count) {
    for (int64 i = 0; i < count; ++i, to += sizeof(T)) std::memcpy(to, &value, sizeof(T));
    return to;
}

template <typename T>
int32 CopyConstBorder(const T* src, int32 srcStep, ImageSize srcRoi, T* dst, int32 dstStep, ImageSize dstRoi, int32 top,
                      int32 left, T value) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (srcStep < 1 || dstStep < 1) return kStepTooSmall;
    const int64 right = int64{dstRoi.width} - left - srcRoi.width;
    const int64 bottom = int64{dstRoi.height} - top - srcRoi.height;
    if (!HasPixels(srcRoi) || !HasPixels(dstRoi) || top < 0 || left < 0 || right < 0 || bottom < 0) return kBadSize;

    const auto* from = reinterpret_cast<const uint8*>(src);
    auto* to = reinterpret_cast<uint8*>(dst);
    const std::size_t rowBytes = sizeof(T) * static_cast<std::size_t>(srcRoi.width);
    for (int32 y = 0; y < dstRoi.height; ++y) {
        uint8* row = RowAt(to, dstStep, y);
        if (y < top || y - top >= srcRoi.height) {
            PutValues(row, value, dstRoi.width);
            continue;
        }
        row = PutValues(row, value, left);
        std::memcpy(row, RowAt(from, srcStep, y - top), rowBytes);
        PutValues(row + rowBytes, value, right);
    }
    return kOk;
}

} // namespace

int32 primCopyConstBorder_8u_C1(const uint8* src, int32 srcStep, ImageSize srcRoi, uint8* dst, int32 dstStep,
                                ImageSize dstRoi, int32 topBorderHeight, int32 leftBorderWidth, uint8 value) {
    return CopyConstBorder(src, srcStep, srcRoi, dst, dstStep, dstRoi, topBorderHeight, leftBorderWidth, value);
}

int32 primCopyConstBorder_16s_C1(const int16* src, int32 srcStep, ImageSize srcRoi, int16* dst, int32 dstStep,
                                 ImageSize dstRoi, int32 topBorderHeight, int32 leftBorderWidth, int16 value) {
    return CopyConstBorder(src, srcStep, srcRoi, dst, dstStep, dstRoi, topBorderHeight, leftBorderWidth, value);
}

} // namespace orvane::generic
