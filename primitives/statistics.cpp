// Counting operations: one pass over the pixels, then arithmetic on what was counted.
#include "primitives/statistics.h"

#include "primitives/row_kernels.h"

#include <algorithm>
#include <cstring>

namespace orvane::generic {
namespace {

/// Pixels are counted by turns in these: neighbours are often alike, and a count waits for the one before it in its
/// place.
constexpr int32 kTables = 8;

void CountBytes(const uint8* row, int32 width, uint32 (&counts)[kTables][256]) {
    int32 x = 0;
    for (; width - x >= kTables; x += kTables) {
        uint64 eight;
        std::memcpy(&eight, row + x, sizeof eight);
        for (int32 i = 0; i < kTables; ++i) ++counts[i][eight >> 8 * i & 0xFF];
    }
    for (; x < width; ++x) ++counts[0][row[x]];
}

} // namespace

int32 primCountInRange_8u_C3(const uint8* src, int32 srcStep, ImageSize roi, int32 counts[3], const uint8 lower[3],
                             const uint8 upper[3]) {
    if (src == nullptr || counts == nullptr || lower == nullptr || upper == nullptr) return kNullPointer;
    if (srcStep < 1) return kStepTooSmall;
    if (!HasPixels(roi)) return kBadSize;
    for (int32 c = 0; c < 3; ++c) {
        if (lower[c] > upper[c]) return kBadRange;
    }
    uint32 found[3] = {0, 0, 0};
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) {
        kernels.countInRange(RowAt(src, srcStep, y), roi.width, lower, upper, found);
    }
    for (int32 c = 0; c < 3; ++c) counts[c] = static_cast<int32>(found[c]);
    return kOk;
}

int32 primHistogramEven_8u_C1(const uint8* src, int32 srcStep, ImageSize roi, int32* hist, int32* levels,
                              int32 levelCount, int32 lowerLevel, int32 upperLevel) {
    if (src == nullptr || hist == nullptr || levels == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    if (srcStep < 1) return kStepTooSmall;
    if (levelCount < 2) return kTooFewLevels;

    const int64 range = int64{upperLevel} - lowerLevel;
    const int64 width = range / (levelCount - 1);
    const int64 wider = range % (levelCount - 1); // below zero for a falling range: no bin is wider
    int64 level = lowerLevel;
    for (int32 k = 0; k < levelCount; ++k) {
        levels[k] = static_cast<int32>(level); // between lowerLevel and upperLevel, so it fits
        level += width + (k < wider ? 1 : 0);
    }

    uint32 counts[kTables][256] = {};
    for (int32 y = 0; y < roi.height; ++y) CountBytes(RowAt(src, srcStep, y), roi.width, counts);
    uint32 below[257] = {}; // below[v]: pixels of a value under v
    for (int32 v = 0; v < 256; ++v) {
        below[v + 1] = below[v];
        for (const auto& table : counts) below[v + 1] += table[v];
    }

    for (int32 k = 0; k < levelCount - 1; ++k) {
        const int32 from = std::clamp(levels[k], 0, 256);
        const int32 to = std::clamp(levels[k + 1], 0, 256);
        hist[k] = from < to ? static_cast<int32>(below[to] - below[from]) : 0;
    }
    return kOk;
}

} // namespace orvane::generic
