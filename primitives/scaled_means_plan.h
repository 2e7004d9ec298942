// What the kernels of scaled means know of a row's columns: the same for all rows, so it is found once.
#pragma once

#include "primitives/heap_array.h"
#include "primitives/row_kernels.h"

#include <algorithm>

namespace orvane {

/// Blocks of kMeanBlock result pixels, each with the columns that it is made of. The rows of the source, their weights
/// and the last bits of the plan, `doubt`, are its owner's.
class ScaledMeansPlan {
public:
    /// Whether no block's first columns lie further apart than the kernels reach. `firstOf(j)` is the first column of
    /// result pixel j, counted from the first of all that are read.
    template <typename FirstOf>
    static bool Fits(int32 count, FirstOf firstOf) {
        for (int32 j = 0; j < count; j += kMeanBlock) {
            const auto [lowest, highest] = Ends(count, j, firstOf);
            if (highest - lowest >= kMeanReach) return false;
        }
        return true;
    }

    /// `weightOf(j, k)` is the weight of the column k behind the first one. False without memory.
    /// @param columns of the source, of which `beyond` more are made of the last
    template <typename FirstOf, typename WeightOf>
    bool Fill(int32 count, int32 channels, int32 taps, int64 columns, int64 beyond, FirstOf firstOf,
              WeightOf weightOf) {
        const int64 pixels = (int64{count} + kMeanPixels - 1) / kMeanPixels * kMeanPixels;
        const int64 step = columns + beyond + taps + kMeanReach;
        if (!planes_.Allocate(step * channels) || !bases_.Allocate(pixels / kMeanBlock) || !places_.Allocate(pixels) ||
            !weights_.Allocate(pixels * taps)) {
            return false;
        }
        means.columns = static_cast<int32>(columns);
        means.beyond = static_cast<int32>(beyond);
        means.planes = planes_.data();
        means.planeStep = static_cast<std::ptrdiff_t>(step);
        means.bases = bases_.data();
        means.places = places_.data();
        means.weights = weights_.data();
        means.taps = taps;
        means.isFar = false;
        means.count = count;
        for (int32 j = 0; j < count; ++j) {
            const int64 block = j / kMeanBlock, place = j % kMeanBlock;
            const int32 base = Ends(count, static_cast<int32>(block) * kMeanBlock, firstOf).lowest;
            const int32 distance = firstOf(j) - base;
            bases_[block] = base;
            places_[j] = distance < kMeanBlock ? distance : (distance - kMeanBlock) | kFurtherMean;
            means.isFar |= distance >= kMeanBlock;
            for (int32 k = 0; k < taps; ++k) weights_[(block * taps + k) * kMeanBlock + place] = weightOf(j, k);
        }
        return true;
    }

    /// By how much the bytes may be off, in 2^-15.
    void SetDoubt(int32 doubt) {
        means.doubt = doubt;
        means.raise = 256.5F + static_cast<float>(doubt) / 32768;
    }

    ScaledMeans means{};

private:
    struct Range {
        int32 lowest;
        int32 highest;
    };

    template <typename FirstOf>
    static Range Ends(int32 count, int32 first, FirstOf firstOf) {
        Range range{firstOf(first), firstOf(first)};
        for (int32 j = first + 1; j < std::min(count - first, kMeanBlock) + first; ++j) {
            range = {std::min(range.lowest, firstOf(j)), std::max(range.highest, firstOf(j))};
        }
        return range;
    }

    HeapArray<float> planes_, weights_;
    HeapArray<int32> bases_, places_;
};

} // namespace orvane
