// Integral images of a grey plane, and the standard deviation of a rectangle at every window position.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// Integral image and integral of squares (Viola and Jones 2001).
/// @param src   grey plane of `roi` pixels
/// @param sum   (width + 1) by (height + 1) floats: pixels above and left of a position, plus `sumInit`
/// @param sqsum (width + 1) by (height + 1) doubles: their squares, plus `sqsumInit`
/// Row 0 and column 0 hold the init values. Steps in bytes.
/// Status, in order of test: null pointer -8; a roi size below 1 -6; srcStep below width, sumStep below
/// 4*width + 4 or sqsumStep below 8*width + 8 -14; sumStep not a multiple of 4 or sqsumStep of 8 -108.
int32 primSqrIntegral_8u32f64f_C1(const uint8* src, int32 srcStep, float* sum, int32 sumStep, double* sqsum,
                                  int32 sqsumStep, ImageSize roi, float sumInit, double sqsumInit);

/// Standard deviation of `rect` (relative to a position) at each of the `roi` window positions, from
/// the two integral images. A variance below zero counts as 0.
/// Status, in order of test: null pointer -8; a roi size below 1 -6; with n = roi.width + rect.x +
/// rect.width: sumStep below 4*n, dstStep below 4*roi.width or sqsumStep below 8*n -14; sumStep or
/// dstStep not a multiple of 4, sqsumStep not of 8 -108; rect.x or rect.y below 0, rect.width or
/// rect.height below 1 -6.
int32 primRectStdDev_32f_C1(const float* sum, int32 sumStep, const double* sqsum, int32 sqsumStep, float* dst,
                            int32 dstStep, ImageSize roi, ImageRect rect);

} // namespace generic

/// `primRectStdDev_32f_C1` at those positions only whose `mask` byte is not 0; the others keep their
/// value. The same bytes at the same positions and the same status.
int32 RectStdDevUnderMask(const float* sum, int32 sumStep, const double* sqsum, int32 sqsumStep, float* dst,
                          int32 dstStep, ImageSize roi, ImageRect rect, const uint8* mask, int32 maskStep);

} // namespace orvane
