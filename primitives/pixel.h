// Operations on bytes whose result at a pixel depends on that pixel alone: masked fills and copies,
// channel moves, logic, thresholds, comparison, colour conversions.
//
// The channel that a name calls first is the first byte of the pixel in memory, whatever it holds;
// only `primSwapChannels_8u_C3` reorders channels. Steps in bytes. Every operation tests its arguments
// in the order given here; the first failure is returned and nothing is written.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// dst = value where the mask byte is not 0; the other pixels stay.
/// Status: null pointer -8; a roi size below 1 -6; a step below 1 -14.
int32 primSetMasked_8u_C1(uint8 value, uint8* dst, int32 dstStep, ImageSize roi, const uint8* mask, int32 maskStep);

/// Copies the pixels whose mask byte is not 0; the others stay. Steps are not tested.
/// Status: null pointer -8; a roi size below 1 -6.
int32 primCopyMasked_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi, const uint8* mask,
                           int32 maskStep);

/// Splits a picture: plane `dst[c]` receives channel c; one step for all planes. Steps are not tested.
/// Status: null pointer, of any plane too, -8; a roi size below 1 -6.
int32 primCopy_8u_C3P3(const uint8* src, int32 srcStep, uint8* const dst[3], int32 dstStep, ImageSize roi);

/// dst channel i = src channel order[i], written one by one; the two are different buffers.
/// Status: null pointer -8; a roi size below 1 -6; a step below 1 -14; an order entry outside 0..2 -60.
int32 primSwapChannels_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi,
                             const int32 order[3]);

/// srcDst = src AND srcDst, bit by bit.
/// Status: null pointer -8; a step below 1 -14; a roi size below 1 -6.
int32 primAnd_8u_C1I(const uint8* src, int32 srcStep, uint8* srcDst, int32 srcDstStep, ImageSize roi);

/// A pixel above thresholdGT becomes valueGT, else one below thresholdLT becomes valueLT, else it is
/// copied. Status: null pointer -8; a roi size below 1 -6; a step below 1 -14; thresholdGT below
/// thresholdLT -18.
int32 primThresholdLTValGTVal_8u_C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi,
                                    uint8 thresholdLT, uint8 valueLT, uint8 thresholdGT, uint8 valueGT);

/// With compareOp 0 a pixel below the threshold becomes `value`, with 4 one above it; others stay.
/// Status: any other compareOp -9999; null pointer -8; a roi size below 1 -6; step below 1 -14.
int32 primThresholdVal_8u_C1I(uint8* srcDst, int32 step, ImageSize roi, uint8 threshold, uint8 value, int32 compareOp);

/// dst = 255 where the pixel compares with `value`, else 0. compareOp: 0 less, 1 less or equal, 2 equal,
/// 3 greater or equal, 4 greater; any other code does nothing and answers 0.
/// Status: null pointer -8; a step below 1 -14; a roi size below 1 -6.
int32 primCompareC_8u_C1(const uint8* src, int32 srcStep, uint8 value, uint8* dst, int32 dstStep, ImageSize roi,
                         int32 compareOp);

/// Grey plane of a picture: (1225*c0 + 2404*c1 + 467*c2) >> 12, c0 the pixel's first byte in memory.
/// The weights add up to 4096: white stays 255. Steps are not tested.
/// Status: null pointer -8; a roi size below 1 -6.
int32 primRGBToGray_8u_C3C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi);

/// Hue, saturation and value of each pixel, its first byte taken as red. Hue runs from 0 to 255 over
/// the full circle (255 is not folded to 0); a grey pixel has hue and saturation 0. In place is fine.
/// Steps are not tested. Status: null pointer -8; a roi size below 1 -6.
int32 primRGBToHSV_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi);

} // namespace generic
} // namespace orvane
