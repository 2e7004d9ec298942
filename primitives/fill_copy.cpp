// Plain fills and copies: one row at a time, nothing between the rows is touched.
#include "primitives/fill_copy.h"

#include <algorithm>
#include <cstring>

namespace orvane::generic {
namespace {

template <typename T>
int32 FillRows(T value, T* dst, int32 dstStep, ImageSize roi) {
    if (dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (dstStep < 1) return kStepTooSmall;
    for (int32 y = 0; y < roi.height; ++y) {
        // As bytes: any step is taken, so a row may lie beside the element's alignment.
        auto* out = RowAt(reinterpret_cast<unsigned char*>(dst), dstStep, y);
        for (int32 x = 0; x < roi.width; ++x, out += sizeof(T)) std::memcpy(out, &value, sizeof(T));
    }
    return kOk;
}

template <typename T>
int32 CopyRows(const T* src, int32 srcStep, T* dst, int32 dstStep, ImageSize roi, int32 channels) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    const std::size_t rowBytes = sizeof(T) * static_cast<std::size_t>(channels) * static_cast<std::size_t>(roi.width);
    if (srcStep == dstStep && static_cast<std::size_t>(srcStep) == rowBytes) {
        std::memcpy(dst, src, rowBytes * static_cast<std::size_t>(roi.height));
        return kOk;
    }
    for (int32 y = 0; y < roi.height; ++y) std::memcpy(RowAt(dst, dstStep, y), RowAt(src, srcStep, y), rowBytes);
    return kOk;
}

/// Fills the first `length` bytes with what their first `period` hold.
void RepeatBeginning(uint8* bytes, std::size_t period, std::size_t length) {
    constexpr std::size_t kLongest = 1536; // stays in the fastest cache
    for (std::size_t done = period; done < length;) {
        const std::size_t more = std::min({done, kLongest, length - done});
        std::memcpy(bytes + done, bytes, more);
        done += more;
    }
}

} // namespace

int32 primSet_8u_C1(uint8 value, uint8* dst, int32 dstStep, ImageSize roi) {
    return FillRows(value, dst, dstStep, roi);
}

int32 primSet_16s_C1(int16 value, int16* dst, int32 dstStep, ImageSize roi) {
    return FillRows(value, dst, dstStep, roi);
}

int32 primSet_32f_C1(float value, float* dst, int32 dstStep, ImageSize roi) {
    return FillRows(value, dst, dstStep, roi);
}

int32 primSet_8u_C3(const uint8 value[3], uint8* dst, int32 dstStep, ImageSize roi) {
    if (value == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (dstStep < 1) return kStepTooSmall;
    const bool grey = value[0] == value[1] && value[1] == value[2];
    for (int32 y = 0; y < roi.height; ++y) {
        uint8* row = RowAt(dst, dstStep, y);
        if (grey) {
            std::memset(row, value[0], static_cast<std::size_t>(roi.width) * 3);
            continue;
        }
        std::memcpy(row, value, 3);
        RepeatBeginning(row, 3, static_cast<std::size_t>(roi.width) * 3);
    }
    return kOk;
}

int32 primCopy_8u_C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi) {
    return CopyRows(src, srcStep, dst, dstStep, roi, 1);
}

int32 primCopy_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi) {
    return CopyRows(src, srcStep, dst, dstStep, roi, 3);
}

int32 primCopy_16u_C1(const uint16* src, int32 srcStep, uint16* dst, int32 dstStep, ImageSize roi) {
    return CopyRows(src, srcStep, dst, dstStep, roi, 1);
}

int32 primCopy_32f_C1(const float* src, int32 srcStep, float* dst, int32 dstStep, ImageSize roi) {
    return CopyRows(src, srcStep, dst, dstStep, roi, 1);
}

} // namespace orvane::generic
