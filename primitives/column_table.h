// Where the elements of a scaled row come from: the same for all rows, so it is found once.
#pragma once

#include "primitives/heap_array.h"
#include "primitives/resize_frame.h"
#include "primitives/row_kernels.h"

namespace orvane {

/// Blocks of kColumnBlock elements, and each element's place. Offsets are those of the first of some source pixels
/// that an element is made of; the others follow it.
class ColumnTable {
public:
    /// `firstOf(j)` is the first source pixel of result pixel j, `taps` how many there are. False without memory.
    template <typename FirstOf>
    bool Fill(const ResizeAxis& axis, int32 channels, int32 taps, FirstOf firstOf) {
        const int64 elements = int64{axis.written} * channels;
        if (!offsets_.Allocate(elements) || !blocks_.Allocate(elements / kColumnBlock + 1)) return false;
        for (int32 j = 0; j < axis.written; ++j) {
            for (int32 c = 0; c < channels; ++c) {
                offsets_[int64{j} * channels + c] = static_cast<std::ptrdiff_t>(firstOf(j)) * channels + c;
            }
        }
        const std::ptrdiff_t begin = -static_cast<std::ptrdiff_t>(axis.origin) * channels;
        const std::ptrdiff_t end = static_cast<std::ptrdiff_t>(axis.extent - axis.origin) * channels;
        const std::ptrdiff_t last = end - kColumnReach - static_cast<std::ptrdiff_t>(taps - 1) * channels;
        const int64 blocks = elements / kColumnBlock;
        for (int64 block = 0; block < blocks; ++block) FillBlock(block, begin, last);
        if (!pairs_.Allocate(blocks + 1)) return false;
        int64 paired = 0;
        while (paired < blocks && FillPairs(paired, channels)) ++paired;
        pairElements_ = paired / 2 * 2 * kColumnBlock;
        return true;
    }

    ColumnPlan Plan() const { return {offsets_.data(), blocks_.data(), pairs_.data(), pairElements_}; }

private:
    /// Reads of a block begin from `begin` to `last`.
    void FillBlock(int64 block, std::ptrdiff_t begin, std::ptrdiff_t last) {
        const std::ptrdiff_t* offsets = &offsets_[block * kColumnBlock];
        const auto [lowest, highest] = std::minmax_element(offsets, offsets + kColumnBlock);
        const std::ptrdiff_t base = std::min(*lowest, last);
        ColumnBlock& to = blocks_[block];
        to.base = kNoColumnBlock;
        if (base < begin || *highest - base >= kColumnReach) return;
        to.base = base;
        for (int32 i = 0; i < kColumnBlock; ++i) to.places[i] = static_cast<uint8>(offsets[i] - base);
    }

    /// False where a second pixel, a pixel of `channels` further, lies too far.
    bool FillPairs(int64 block, int32 channels) {
        const ColumnBlock& from = blocks_[block];
        ColumnPairs& to = pairs_[block];
        to.base = from.base;
        if (from.base == kNoColumnBlock) return false;
        for (std::ptrdiff_t i = 0; i < kColumnBlock; ++i) {
            const int32 second = from.places[i] + channels;
            if (second >= kColumnReach) return false;
            to.places[2 * i] = from.places[i];
            to.places[2 * i + 1] = static_cast<uint8>(second);
        }
        return true;
    }

    HeapArray<std::ptrdiff_t> offsets_;
    HeapArray<ColumnBlock> blocks_;
    HeapArray<ColumnPairs> pairs_;
    int64 pairElements_ = 0;
};

} // namespace orvane
