// Conversions and arithmetic. Floats are loaded and stored by memcpy: a step need not be a multiple of
// four, so a row may lie at any address.
#include "primitives/arithmetic.h"

#include "primitives/row_kernels.h"

#include <algorithm>
#include <cstring>

namespace orvane::generic {
namespace {

constexpr int32 kRoundToNearest = 1;

float LoadFloat(const uint8* at) {
    float value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

void StoreFloat(uint8* at, float value) { std::memcpy(at, &value, sizeof value); }

uint8* FloatRow(float* first, int32 step, int32 y) { return RowAt(reinterpret_cast<uint8*>(first), step, y); }
const uint8* FloatRow(const float* first, int32 step, int32 y) {
    return RowAt(reinterpret_cast<const uint8*>(first), step, y);
}

std::ptrdiff_t RowElements(ImageSize roi) { return std::ptrdiff_t{3} * roi.width; }

/// `v` limited to 0..255; 0 also for what is not a number.
float Limited(float v) {
    const float positive = v > 0.0f ? v : 0.0f;
    return positive < 255.0f ? positive : 255.0f;
}

uint8 Truncated(float v) { return static_cast<uint8>(static_cast<int32>(Limited(v))); }

/// The difference 0..255 times 2^-scaleFactor.
uint8 Scaled(int32 difference, int32 scaleFactor) {
    if (scaleFactor == 0) return static_cast<uint8>(difference);
    if (scaleFactor > 8) return 0;
    if (scaleFactor < -7) return difference > 0 ? 255 : 0;
    if (scaleFactor < 0) return static_cast<uint8>(std::min(difference << -scaleFactor, 255));
    const int32 odd = difference >> scaleFactor & 1; // lifts a tie, but only above an odd number
    return static_cast<uint8>((difference + (1 << (scaleFactor - 1)) - 1 + odd) >> scaleFactor);
}

} // namespace

int32 primConvert_8u32f_C3(const uint8* src, int32 srcStep, float* dst, int32 dstStep, ImageSize roi) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (srcStep < 1 || dstStep < 1) return kStepTooSmall;
    for (int32 y = 0; y < roi.height; ++y) {
        const uint8* from = RowAt(src, srcStep, y);
        uint8* to = FloatRow(dst, dstStep, y);
        for (std::ptrdiff_t i = 0; i < RowElements(roi); ++i) StoreFloat(to + 4 * i, from[i]);
    }
    return kOk;
}

int32 primConvert_32f8u_C3(const float* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi, int32 roundMode) {
    if (src == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (srcStep < 1 || dstStep < 1) return kStepTooSmall;
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) {
        const uint8* from = FloatRow(src, srcStep, y);
        uint8* to = RowAt(dst, dstStep, y);
        const std::ptrdiff_t elements = RowElements(roi);
        if (roundMode == kRoundToNearest) {
            kernels.roundToBytes(from, to, elements);
        } else {
            for (std::ptrdiff_t i = 0; i < elements; ++i) to[i] = Truncated(LoadFloat(from + 4 * i));
        }
    }
    return kOk;
}

int32 primMulC_32f_C3I(const float value[3], float* srcDst, int32 step, ImageSize roi) {
    if (value == nullptr || srcDst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    const float factors[3] = {value[0], value[1], value[2]};
    for (int32 y = 0; y < roi.height; ++y) {
        uint8* at = FloatRow(srcDst, step, y);
        for (int32 x = 0; x < roi.width; ++x, at += 12) {
            for (std::ptrdiff_t c = 0; c < 3; ++c) StoreFloat(at + 4 * c, LoadFloat(at + 4 * c) * factors[c]);
        }
    }
    return kOk;
}

int32 primSubC_8u_C3ISfs(const uint8 value[3], uint8* srcDst, int32 step, ImageSize roi, int32 scaleFactor) {
    if (value == nullptr || srcDst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (scaleFactor == 0) {
        const uint8 values[3] = {value[0], value[1], value[2]};
        for (int32 y = 0; y < roi.height; ++y) CurrentRowKernels().subtract(values, RowAt(srcDst, step, y), roi.width);
        return kOk;
    }
    uint8 results[3][256]; // a channel's result depends on its byte alone
    for (int32 c = 0; c < 3; ++c) {
        for (int32 v = 0; v < 256; ++v) results[c][v] = Scaled(std::max(v - value[c], 0), scaleFactor);
    }
    for (int32 y = 0; y < roi.height; ++y) {
        uint8* at = RowAt(srcDst, step, y);
        for (int32 x = 0; x < roi.width; ++x, at += 3) {
            for (int32 c = 0; c < 3; ++c) at[c] = results[c][at[c]];
        }
    }
    return kOk;
}

} // namespace orvane::generic
