// Gradients of a grey plane, and the edges that follow from them (Canny 1986).
#pragma once

#include "primitives/types.h"

namespace orvane {

/// Mask codes of the Sobel filters.
inline constexpr int32 kMask3x3 = 33;
inline constexpr int32 kMask5x5 = 55;

/// Border types of the gradient filters: what stands beyond the region. Types 2, 3 and 4 are accepted
/// and mean the same as `kBorderReplicate`.
inline constexpr int32 kBorderConstant = 0;
inline constexpr int32 kBorderReplicate = 1;
inline constexpr int32 kLastBorderType = 4;

namespace generic {

/// Gradient of a grey plane; nothing beyond `roi` is read. The Horiz filters are below minus above,
/// positive towards higher rows; the Vert and NegVert filters are right minus left.
/// @param borderValue what `kBorderConstant` puts around the region
/// @param buffer not null, of the size that the filter's query reports
/// Status, in order of test: null pointer -8; a roi size below 1 -6; srcStep below width or dstStep
/// below 2*width -14; dstStep odd -108; border type outside 0..4 -5; mask code neither 33 nor 55 -33.
int32 primFilterSobelHorizBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                          int32 maskCode, int32 borderType, uint8 borderValue, uint8* buffer);
int32 primFilterSobelNegVertBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                            int32 maskCode, int32 borderType, uint8 borderValue, uint8* buffer);
int32 primFilterScharrHorizBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                           int32 borderType, uint8 borderValue, uint8* buffer);
int32 primFilterScharrVertBorder_8u16s_C1(const uint8* src, int32 srcStep, int16* dst, int32 dstStep, ImageSize roi,
                                          int32 borderType, uint8 borderValue, uint8* buffer);

/// Bytes of the buffer that a gradient filter wants; at least 1, so that it can be allocated.
/// Status, in order of test: null pointer -8; a roi size below 1 -6; mask code neither 33 nor 55 -33.
int32 primFilterSobelHorizGetBufferSize(ImageSize roi, int32 maskCode, int32* size);
int32 primFilterSobelNegVertGetBufferSize(ImageSize roi, int32 maskCode, int32* size);
int32 primFilterScharrHorizGetBufferSize(ImageSize roi, int32* size);
int32 primFilterScharrVertGetBufferSize(ImageSize roi, int32* size);

/// Edges from the two gradients: 255 on an edge, 0 elsewhere.
/// @param dx gradient to the right
/// @param dy gradient towards higher rows
/// @param lowThreshold  magnitudes |dx| + |dy| up to its whole part count as 0
/// @param highThreshold a magnitude above it starts an edge, which then runs over all that touch it
/// @param buffer of the size that `primCannyGetBufferSize` reports
/// Status, in order of test: null pointer -8; a roi size below 1 -6; dxStep or dyStep below 2*width or
/// dstStep below width -14; dxStep or dyStep odd -108; lowThreshold below 0 or highThreshold below it,
/// also when one is not a number, -5; no memory, only where the buffer size is at its limit, -9.
int32 primCanny_16s8u_C1(const int16* dx, int32 dxStep, const int16* dy, int32 dyStep, uint8* dst, int32 dstStep,
                         ImageSize roi, float lowThreshold, float highThreshold, uint8* buffer);

/// Bytes of the buffer for `primCanny_16s8u_C1`; 2^31 - 1 where more would be wanted: the filter then
/// takes storage of its own. Status, in order of test: null pointer -8; a roi size below 1 -6.
int32 primCannyGetBufferSize(ImageSize roi, int32* size);

} // namespace generic
} // namespace orvane
