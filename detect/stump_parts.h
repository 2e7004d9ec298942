// Stumps whose comparison can be made in sums of 16 bits: their parts are small, their weights whole multiples of one.
#pragma once

#include "primitives/types.h"

namespace orvane {

inline constexpr int32 kMostRects = 4;

/// What a stump is made of: one rectangle; two of which the first holds the second, along one of its sides or not; two
/// others, three, four.
enum StumpKind : int32 { kOneRect, kRectsAlongASide, kNestedRects, kTwoRects, kThreeRects, kFourRects, kOtherRects };
inline constexpr int32 kStumpKinds = kOtherRects; // those that a plan has a form for
inline constexpr int32 kRectsOfKind[kStumpKinds] = {1, 2, 2, 2, 3, 4};
inline constexpr int32 kCornersOfKind[kStumpKinds] = {4, 6, 8, 8, 12, 16};
inline constexpr int32 kMostCorners = 16;

StumpKind KindOf(const ImageRect* rects, int32 count);

/// The offsets of a stump's corners in a plane of sums, in the order plus, minus, minus, plus for each rectangle. Those
/// along a side share its two corners: what the first rectangle's other corners differ by, less the difference of the
/// side's, is its sum, and so for the second. Their order is first, side, second.
/// @param offsets kCornersOfKind of them
void FindCorners(StumpKind kind, const ImageRect* rects, int32 stride, int32* offsets);

/// The weights of a stump's parts, which are its rectangles; where the first holds the second, the first
/// without it, and that.
struct PartWeights {
    float unit;
    int16 multiples[kMostRects]; // of the unit
};

/// Sums of 16 bits are those of levels less this one.
inline constexpr int32 kMiddleLevel = 128;

/// Finds the weights of a stump's parts, each within 2^-23 of itself. False where a part has more pixels than a sum of
/// 16 bits has room for, where a weight is no multiple of the smallest, or where the weights of all pixels do not make
/// up for each other, so that it matters what was taken off the levels.
bool FindPartWeights(const ImageRect* rects, const float* weights, int32 count, PartWeights& parts);

} // namespace orvane
