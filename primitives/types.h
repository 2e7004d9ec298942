// The element types, region records and status codes that all primitives share.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orvane {

using int16 = std::int16_t;
using int32 = std::int32_t;
using int64 = std::int64_t;
using uint8 = std::uint8_t;
using uint16 = std::uint16_t;
using uint32 = std::uint32_t;
using uint64 = std::uint64_t;

/// Size of a region in pixels.
struct ImageSize {
    int32 width;
    int32 height;
};

/// A pixel position; y grows with the row index in memory.
struct ImagePoint {
    int32 x;
    int32 y;
};

/// A region in pixels; (x, y) is its first pixel in memory.
struct ImageRect {
    int32 x;
    int32 y;
    int32 width;
    int32 height;
};

/// What a primitive answers: 0 success, below zero an error (nothing useful was written), above zero
/// a warning (the operation did nothing).
enum Status : int32 {
    kOk = 0,
    kBadArgument = -5, // a classifier rectangle, a border type, Canny thresholds
    kBadSize = -6,     // a size below its minimum
    kBadRange = -7,    // a lower bound above the upper bound
    kNullPointer = -8,
    kNoMemory = -9,
    kSeedOutside = -11,    // a seed point outside the region
    kStepTooSmall = -14,   // a step too small for the region
    kThresholdOrder = -18, // a high threshold below the low one
    kBadInterpolation = -22,
    kBadFactor = -23, // a scale factor not above zero
    kBadMaskSize = -33,
    kBadAnchor = -34,           // an anchor outside the mask
    kStepTooSmallForMask = -37, // a step too small for the region and the mask
    kDegenerateTransform = -56,
    kSourceTooSmall = -57, // a source region too small for the transform
    kEmptyMask = -59,      // a filter mask of all zeros
    kBadChannelOrder = -60,
    kTooFewLevels = -107,
    kStepNotMultiple = -108, // a step that is not a multiple of the element size
    kNothingToWrite = -201,  // a resize with nothing to write
    kUnknownCode = -9999,    // a comparison code that the operation does not support
    kNoIntersection = 29,    // the source region does not meet the source image, or a rotated region the destination
    kEmptyResult = 30,       // the rotated region is empty inside the destination
};

/// Interpolation codes of the resize and rotation primitives.
enum Interpolation : int32 {
    kNearest = 1,
    kLinear = 2,
    kCubic = 4,
    kBoxAverage = 8,
};

/// Comparison codes of the threshold and comparison primitives.
enum CompareOp : int32 {
    kLess = 0,
    kLessOrEqual = 1,
    kEqual = 2,
    kGreaterOrEqual = 3,
    kGreater = 4,
};

/// Row `y` of a plane whose rows lie `step` bytes apart. The product is taken in pointer width, so
/// that planes beyond 2 GiB stay addressable.
template <typename T>
inline T* RowAt(T* first, int32 step, int32 y) {
    using Byte = const unsigned char;
    return reinterpret_cast<T*>(const_cast<unsigned char*>(reinterpret_cast<Byte*>(first)) +
                                static_cast<std::ptrdiff_t>(step) * y);
}

/// True when a region holds at least one pixel.
inline bool HasPixels(ImageSize roi) { return roi.width >= 1 && roi.height >= 1; }

} // namespace orvane
