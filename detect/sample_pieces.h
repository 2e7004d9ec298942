// How a row of a scale is put together from pieces of a row of the picture: sixteen samples from a few pieces of
// sixteen pixels, whose places in them are the same for all rows.
#pragma once

#include "primitives/heap_array.h"
#include "primitives/types.h"

namespace orvane {

inline constexpr int32 kPiece = 16; // pixels of a piece, and samples that are taken together

/// As many pieces for each sixteen samples.
struct SamplePieces {
    int32 groups;         // of sixteen samples
    int32 pieces;         // of each
    const int32* offsets; // where a piece begins, one for each
    const uint8* places;  // sixteen for each: where in the piece a sample lies, or kNowhere
};

inline constexpr uint8 kNowhere = 128;

/// The pieces of a scale, in storage for the largest one.
class SamplePlan {
public:
    /// Makes room for `width` samples. False when memory is exhausted.
    [[nodiscard]] bool Reserve(int32 width);

    /// Plans samples of a row of `extent` pixels. False where they lie too far apart for pieces to pay.
    /// @param columns those of the samples, ascending
    bool Make(const int32* columns, int32 width, int32 extent);

    SamplePieces Pieces() const { return {groups_, pieces_, offsets_.data(), places_.data()}; }

private:
    HeapArray<int32> offsets_;
    HeapArray<uint8> places_;
    int32 groups_ = 0;
    int32 pieces_ = 0;
};

} // namespace orvane
