// Flood fill: the checks, and the choice between words of pixels and, in narrow regions, spans.
#include "primitives/flood_fill.h"

#include "primitives/flood_spans.h"
#include "primitives/flood_words.h"

#include <algorithm>
#include <limits>

namespace orvane::generic {
namespace {

int32 BufferSize(ImageSize roi) {
    // For the largest sizes the product wraps in 64 bits; its low 32 bits, which are wanted, stay right.
    const uint64 bytes = 6 * (static_cast<uint64>(roi.width) * static_cast<uint64>(roi.height)) + 32;
    return static_cast<int32>(static_cast<uint32>(bytes));
}

bool BufferSizeFits(ImageSize roi) {
    constexpr int64 kMostPixels = (int64{std::numeric_limits<int32>::max()} - 32) / 6;
    return int64{roi.width} * roi.height <= kMostPixels;
}

int32 FloodFill(uint8* image, int32 step, ImageSize roi, ImagePoint seed, uint8 newValue, ConnectedRegion* region,
                uint8* buffer, int32 reach) {
    if (image == nullptr || region == nullptr || buffer == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (step < roi.width) return kStepTooSmall;
    if (seed.x < 0 || seed.y < 0 || seed.x >= roi.width || seed.y >= roi.height) return kSeedOutside;
    if (!BufferSizeFits(roi)) return kNoMemory;
    const uint8 oldValue = RowAt(image, step, seed.y)[seed.x];
    if (oldValue == newValue) return kOk;
    const std::uintptr_t misaligned = reinterpret_cast<std::uintptr_t>(buffer) % sizeof(uint64);
    auto* block = reinterpret_cast<uint64*>(misaligned == 0 ? buffer : buffer + (sizeof(uint64) - misaligned));
    if (roi.width < WordFiller::kLeastWidth) {
        SpanFiller filler(image, step, roi, oldValue, newValue, block);
        filler.Run(seed, reach);
        *region = filler.Result();
    } else {
        WordFiller filler(image, step, roi, oldValue, newValue, block);
        filler.Run(seed, reach);
        *region = filler.Paint();
    }
    return kOk;
}

} // namespace

int32 primFloodFill4_8u_C1I(uint8* image, int32 step, ImageSize roi, ImagePoint seed, uint8 newValue,
                            ConnectedRegion* region, uint8* buffer) {
    return FloodFill(image, step, roi, seed, newValue, region, buffer, 0);
}

int32 primFloodFill8_8u_C1I(uint8* image, int32 step, ImageSize roi, ImagePoint seed, uint8 newValue,
                            ConnectedRegion* region, uint8* buffer) {
    return FloodFill(image, step, roi, seed, newValue, region, buffer, 1);
}

int32 primFloodFillGetSize(ImageSize roi, int32* size) {
    if (size == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    *size = BufferSize(roi);
    return kOk;
}

} // namespace orvane::generic

namespace orvane {

int32 FloodFillUse(ImageSize roi) {
    constexpr int64 kMost = std::numeric_limits<int32>::max();
    const int64 used = roi.width < WordFiller::kLeastWidth ? int64{6} * roi.width * roi.height + 32
                                                           : WordFiller::BytesFor(roi) + int64{sizeof(uint64)};
    return static_cast<int32>(std::min(used, kMost));
}

} // namespace orvane
