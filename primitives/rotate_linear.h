// Linear samples along a straight line through a picture: one row of a turned picture.
#pragma once

#include "primitives/row_kernels.h"
#include "primitives/types.h"

namespace orvane {

/// A position between the pixels of a picture, or a step from one to the next.
struct SourcePosition {
    double u;
    double v;
};

/// A picture of two by two pixels at least, and the way through it from one sample to the next.
struct LinearPath {
    const uint8* src;
    ImageSize srcSize;
    int32 srcStep;
    SourcePosition step;
};

/// Writes `count` pixels of 1 or 3 channels: the samples at `at` and at the sums of it and the steps, added one
/// by one; `at` ends one step behind the last. A position beyond the picture takes the picture's edge.
template <int32 Channels>
void SampleLinearly(const LinearPath& path, SourcePosition& at, int64 count, uint8* to);

/// The same of neighbouring rows, which a processor may take together: each one's `u` and `v` end one step behind the
/// last sample, unless none of the row follow.
template <int32 Channels>
void SampleRowsLinearly(const LinearPath& path, TurnedStart (&rows)[kTurnedRows], int64 count);

} // namespace orvane
