// Flood fills: everything of one value that hangs together with a seed pixel gets a new value.
#pragma once

#include "primitives/bit_plane.h"

namespace orvane {

/// What a flood fill changed.
struct ConnectedRegion {
    double area;     ///< number of changed pixels
    double value[3]; ///< the new value, 0, 0
    ImageRect rect;  ///< bounding box of the changed pixels
};

namespace generic {

/// Gives `newValue` to every pixel that is connected to the seed, inside the region, through pixels of the
/// seed's value: by the four direct neighbours, or by all eight. A seed that has the new value already
/// changes nothing, not even `region`.
/// @param buffer work space of the size that `primFloodFillGetSize` gives for this region, at any address
/// Status, in order of test: null pointer -8; a roi size below 1 -6; step below width -14; seed outside
/// the region -11; a region whose buffer size does not fit into 32 bits (above 357 million pixels) -9.
int32 primFloodFill4_8u_C1I(uint8* image, int32 step, ImageSize roi, ImagePoint seed, uint8 newValue,
                            ConnectedRegion* region, uint8* buffer);
int32 primFloodFill8_8u_C1I(uint8* image, int32 step, ImageSize roi, ImagePoint seed, uint8 newValue,
                            ConnectedRegion* region, uint8* buffer);

/// Bytes of a flood fill's buffer: 6*width*height + 32, cut to 32 bits.
/// Status, in order of test: null pointer -8; a roi size below 1 -6.
int32 primFloodFillGetSize(ImageSize roi, int32* size);

} // namespace generic

/// Marks in `filled`, a new plane, what is connected to the seed in `plane` through pixels that are marked as the seed
/// is: by the four direct neighbours for a `reach` of 0, by all eight for 1. `area` is their number.
/// Status, in order of test: no memory -9, and `filled` has no pixels then; seed outside the plane -11.
int32 FloodBits(const BitPlane& plane, ImagePoint seed, int32 reach, BitPlane& filled, int64& area);

} // namespace orvane
