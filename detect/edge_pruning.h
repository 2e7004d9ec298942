// The ways to thin out a mask of window positions before the cascade runs over it.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

/// Clears all rows of the mask but one in `gap` + 1; 0 when `gap` is not below `height`. When the
/// clearing fails the whole mask is opened and the failing status returned.
int32 PruneRows(uint8* mask, int32 maskStep, int32 width, int32 height, int32 gap);

/// The same with columns.
int32 PruneColumns(uint8* mask, int32 maskStep, int32 width, int32 height, int32 gap);

/// Columns, then rows, of the same mask.
int32 PruneRowsColumns(uint8* mask, int32 maskStep, int32 width, int32 height, int32 gap);

/// What edge pruning works in, kept between calls so that a pass over many scales allocates once.
class EdgeWorkspace {
public:
    EdgeWorkspace() = default;
    ~EdgeWorkspace();
    EdgeWorkspace(const EdgeWorkspace&) = delete;
    EdgeWorkspace& operator=(const EdgeWorkspace&) = delete;

    /// Gradient planes of this size. False when memory is exhausted.
    bool ReservePlanes(int32 width, int32 height);
    /// A buffer of at least `bytes`, or null when memory is exhausted. It replaces the one before.
    uint8* ReserveBuffer(int32 bytes);

    ImageBuffer dx, dy;

private:
    uint8* buffer_ = nullptr;
    int32 bufferBytes_ = 0;
};

/// Replaces the mask by the edge map of the grey region `src`, so that a window lives where its origin
/// is an edge pixel. Variant 0: 3x3 Sobel, thresholds 8 and 24; 1: 5x5 Sobel, 96 and 288; 2: Scharr, 32
/// and 96. 0; -2 for another variant; -9 when memory is exhausted; else the failing primitive's status.
int32 PruneByEdges(const uint8* src, int32 srcStep, uint8* mask, int32 maskStep, int32 width, int32 height,
                   int32 variant, EdgeWorkspace& workspace);

} // namespace orvane
