// Flood fill: the checks, and the choice between words of pixels and, in narrow regions, spans.
#include "primitives/flood_fill.h"

#include "primitives/flood_spans.h"
#include "primitives/flood_words.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace orvane::generic {
namespace {

/// Narrower regions would not fit the caller's buffer: of 6 bytes a pixel the words take 16 for each, 24 a row and 2
/// bits.
constexpr int32 kLeastWidthForWords = 64;

/// The bits of up to 64 pixels that hold the value, the first pixel's lowest.
uint64 PixelsOfValue(const uint8* pixels, int32 count, uint8 value) {
    uint64 bits = 0;
    int32 i = 0;
#ifdef __SSE2__
    const __m128i wanted = _mm_set1_epi8(static_cast<char>(value));
    for (; count - i >= 16; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + i));
        const auto found = static_cast<uint32>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)));
        bits |= uint64{found} << i;
    }
#endif
    for (; i < count; ++i) bits |= uint64{pixels[i] == value ? 1U : 0U} << i;
    return bits;
}

/// Gives the pixels of the set bits the value.
void PaintPixels(uint8* pixels, int32 count, uint64 bits, uint8 value) {
    int32 i = 0;
    for (; count - i >= 8 && bits >> i != 0; i += 8) {
        const uint64 mask = BytesOfEightBits(bits >> i);
        uint64 eight;
        std::memcpy(&eight, pixels + i, sizeof eight);
        eight = (eight & ~mask) | (value * uint64{0x0101010101010101} & mask);
        std::memcpy(pixels + i, &eight, sizeof eight);
    }
    for (; i < count; ++i) pixels[i] = (bits >> i & 1) != 0 ? value : pixels[i];
}

/// Writes what was filled; what it is together.
ConnectedRegion Paint(const WordFiller& filler, uint8* image, int32 step, ImageSize roi, uint8 value) {
    int64 area = 0;
    int32 left = std::numeric_limits<int32>::max(), right = -1, top = left, bottom = -1;
    filler.VisitFilled([&](int32 y, WordRange words, const uint64* filled) {
        top = std::min(top, y);
        bottom = y;
        left = std::min(left, words.first * 64 + std::countr_zero(filled[words.first]));
        right = std::max(right, words.end * 64 - 1 - std::countl_zero(filled[words.end - 1]));
        uint8* row = RowAt(image, step, y);
        for (int32 i = words.first; i < words.end; ++i) {
            if (filled[i] == 0) continue;
            const int32 whole = WordFiller::WholeWords(filled, filled, i, words.end);
            if (whole > 0) {
                std::memset(row + std::ptrdiff_t{64} * i, value, std::size_t{64} * static_cast<uint32>(whole));
                area += int64{64} * whole;
                i += whole - 1;
                continue;
            }
            area += std::popcount(filled[i]);
            PaintPixels(row + std::ptrdiff_t{64} * i, std::min(roi.width - i * 64, 64), filled[i], value);
        }
    });
    return {static_cast<double>(area),
            {static_cast<double>(value), 0.0, 0.0},
            {left, top, right - left + 1, bottom - top + 1}};
}

ConnectedRegion FillByWords(uint8* image, int32 step, ImageSize roi, ImagePoint seed, uint8 newValue, uint64* buffer,
                            int32 reach) {
    const uint8 oldValue = RowAt(image, step, seed.y)[seed.x];
    const int32 words = BitPlane::WordsFor(roi.width);
    WordFiller filler(roi, buffer, buffer + std::ptrdiff_t{words} * roi.height);
    filler.Run(seed, reach, [&](int32 y, uint64* open) {
        const uint8* row = RowAt(image, step, y);
        for (int32 i = 0; i < words; ++i, row += 64) {
            open[i] = PixelsOfValue(row, std::min(roi.width - i * 64, 64), oldValue);
        }
    });
    return Paint(filler, image, step, roi, newValue);
}

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
    if (roi.width < kLeastWidthForWords) {
        SpanFiller filler(image, step, roi, oldValue, newValue, block);
        filler.Run(seed, reach);
        *region = filler.Result();
    } else {
        *region = FillByWords(image, step, roi, seed, newValue, block, reach);
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

int32 FloodBits(const BitPlane& plane, ImagePoint seed, int32 reach, BitPlane& filled, int64& area) {
    area = 0;
    const ImageSize size = plane.Size();
    HeapArray<uint64> work;
    if (!work.Allocate(WordFiller::WorkWords(size)) || !filled.Create(size)) return kNoMemory;
    if (seed.x < 0 || seed.y < 0 || seed.x >= size.width || seed.y >= size.height) return kSeedOutside;
    const uint64 others = plane.Has(seed) ? 0 : ~uint64{0};
    WordFiller filler(size, filled.Row(0), work.data());
    filler.Run(seed, reach, [&](int32 y, uint64* open) {
        const uint64* row = plane.Row(y);
        for (int32 i = 0; i < plane.Words(); ++i) open[i] = (row[i] ^ others) & plane.PixelsOf(i);
    });
    filler.VisitFilled([&](int32, WordRange words, const uint64* row) {
        for (int32 i = words.first; i < words.end; ++i) area += row[i] == ~uint64{0} ? 64 : std::popcount(row[i]);
    });
    return kOk;
}

} // namespace orvane
