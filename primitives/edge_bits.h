// Edge maps of a bit a pixel: the following of ridges from strong pixels, 64 pixels at a time.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// Words of a row.
inline int32 WordsOf(int32 width) { return (width + 63) / 64; }

/// Adds to `edges` all pixels of `ridges` that are joined to one of them through ridge pixels, along sides and corners.
/// Both have `height` rows of `words` words; bit 0 of a word is its first pixel. `edges` must lie within `ridges`.
/// @param marks a byte a row, for the work
void FollowRidges(const uint64* ridges, uint64* edges, int32 words, int32 height, uint8* marks);

} // namespace orvane
