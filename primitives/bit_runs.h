// Runs of set bits, filled from seeds that lie in them.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// The seeds, and of their runs what lies above them: the carry of an addition goes through a run.
inline uint64 FillUpwards(uint64 runs, uint64 seeds) { return (runs & (runs ^ (runs + seeds))) | seeds; }

/// Likewise what lies below them, in steps of doubled length.
inline uint64 FillDownwards(uint64 runs, uint64 seeds) {
    // Where `way` has a bit, as many bits of a run as the shift are above it; few runs are long.
    uint64 way = runs;
    for (int shift = 1; shift < 64 && way != 0; shift *= 2) {
        seeds |= way & seeds >> shift;
        way &= way >> shift;
    }
    return seeds;
}

} // namespace orvane
