// Early stages made stricter once the later ones are known.
#pragma once

#include "tools/train/cascade.h"

namespace orvane::train {

struct PruneOptions {
    int stages = 20;    // that get new thresholds; none: all stay
    int keep = 6;       // of a face's windows that pass the whole cascade, so many still do, or all of fewer
    double lose = 0.02; // of the faces keep fewer
};

/// A face and windows cut out around it.
struct FaceWindows {
    std::size_t source = 0;
    std::vector<Patch> windows;
};

/// The cascade with the thresholds of its early stages raised as far as the faces allow: a window that a late stage
/// refuses may as well go in the first, and of those that pass all stages each face can spare some. The share of faces
/// that may keep too few is spent as early as it can be, where most windows are, and at most five times as large for
/// one source. No threshold becomes lower. (Multiple-instance pruning: C. Zhang and P. Viola, Multiple-Instance Pruning
/// for Learning Efficient Cascade Detectors, NIPS 2007.)
Cascade Pruned(const Cascade& cascade, const std::vector<FaceWindows>& faces, const PruneOptions& options, int threads);

} // namespace orvane::train
