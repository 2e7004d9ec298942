// Plain fills and copies of a region, row by row.
#pragma once

#include "primitives/types.h"

namespace orvane {
namespace generic {

/// Sets every pixel of the region to `value`. Steps in bytes.
/// Status, in order of test: null pointer -8; a roi size below 1 -6; step below 1 -14.
int32 primSet_8u_C1(uint8 value, uint8* dst, int32 dstStep, ImageSize roi);
int32 primSet_16s_C1(int16 value, int16* dst, int32 dstStep, ImageSize roi);
int32 primSet_32f_C1(float value, float* dst, int32 dstStep, ImageSize roi);
int32 primSet_8u_C3(const uint8 value[3], uint8* dst, int32 dstStep, ImageSize roi);

/// Copies the pixels of the region; source and destination must not overlap. Steps in bytes, not
/// tested. Status, in order of test: null pointer -8; a roi size below 1 -6.
int32 primCopy_8u_C1(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi);
int32 primCopy_8u_C3(const uint8* src, int32 srcStep, uint8* dst, int32 dstStep, ImageSize roi);
int32 primCopy_16u_C1(const uint16* src, int32 srcStep, uint16* dst, int32 dstStep, ImageSize roi);
int32 primCopy_32f_C1(const float* src, int32 srcStep, float* dst, int32 dstStep, ImageSize roi);

} // namespace generic
} // namespace orvane
