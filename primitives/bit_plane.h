// A plane of pixels that are marked or not, a bit each.
#pragma once

#include "primitives/heap_array.h"

#include <bit>

namespace orvane {

/// All bits of each byte whose number is a set bit of `eight`, the lowest one that of the first byte in memory.
inline uint64 BytesOfEightBits(uint64 eight) {
    // Each byte keeps its own bit of eight, which then fills it.
    const uint64 own = (eight & 0xFF) * 0x0101010101010101 & 0x8040201008040201;
    return ((own + 0x7F7F7F7F7F7F7F7F) >> 7 & 0x0101010101010101) * 0xFF;
}

/// Rows of words of 64 pixels, the first pixel's bit the lowest. Bits behind a row's last pixel are 0.
class BitPlane {
public:
    static int32 WordsFor(int32 width) { return (width - 1) / 64 + 1; }

    /// Takes the size, once, with no pixel marked. False without storage, and the plane then stays empty.
    [[nodiscard]] bool Create(ImageSize size) {
        if (!bits_.Allocate(int64{WordsFor(size.width)} * size.height)) return false;
        size_ = size;
        return true;
    }

    bool IsEmpty() const { return size_.height == 0; }
    ImageSize Size() const { return size_; }
    int32 Words() const { return WordsFor(size_.width); }

    uint64* Row(int32 y) { return bits_.data() + std::ptrdiff_t{Words()} * y; }
    const uint64* Row(int32 y) const { return bits_.data() + std::ptrdiff_t{Words()} * y; }

    bool Has(ImagePoint at) const { return (Row(at.y)[at.x / 64] >> at.x % 64 & 1) != 0; }

    /// The bits of a word that are pixels.
    uint64 PixelsOf(int32 word) const { return ~uint64{0} >> (word + 1 == Words() ? 63 - (size_.width - 1) % 64 : 0); }

private:
    HeapArray<uint64> bits_;
    ImageSize size_{};
};

} // namespace orvane
