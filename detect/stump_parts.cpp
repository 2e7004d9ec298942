#include "detect/stump_parts.h"

#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

constexpr int32 kMostPixels = 256;      // of a part: -128 * 256 is the least number of 16 bits
constexpr int32 kLargestMultiple = 255; // so that sums of products stay in 32 bits

bool Holds(const ImageRect& outer, const ImageRect& inner) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

/// The smallest magnitude but 0; 0 without any.
double UnitOf(const float* weights, int32 count) {
    double unit = 0.0;
    for (int32 i = 0; i < count; ++i) {
        const double magnitude = std::fabs(weights[i]);
        if (magnitude > 0.0 && (unit == 0.0 || magnitude < unit)) unit = magnitude;
    }
    return unit;
}

} // namespace

StumpKind KindOf(const ImageRect* rects, int32 count) {
    switch (count) {
    case 1:
        return kOneRect;
    case 2:
        return Holds(rects[0], rects[1]) ? kNestedRects : kTwoRects;
    case 3:
        return kThreeRects;
    case 4:
        return kFourRects;
    default:
        return kOtherRects;
    }
}

bool FindPartWeights(const ImageRect* rects, const float* weights, int32 count, PartWeights& parts) {
    const StumpKind kind = KindOf(rects, count);
    if (kind == kOneRect || kind == kOtherRects) return false;
    const double unit = UnitOf(weights, count);
    int32 multiples[kMostRects] = {}, pixels[kMostRects] = {};
    for (int32 i = 0; i < count; ++i) {
        const double weight = weights[i], multiple = unit > 0.0 ? std::round(weight / unit) : 0.0;
        if (std::fabs(multiple) > kLargestMultiple) return false;
        if (std::fabs(weight - multiple * unit) > std::ldexp(std::fabs(weight), -23)) return false;
        multiples[i] = static_cast<int32>(multiple);
        pixels[i] = rects[i].width * rects[i].height;
    }
    if (kind == kNestedRects) {
        pixels[0] -= pixels[1];
        multiples[1] += multiples[0];
    }
    int64 balance = 0, magnitude = 0;
    for (int32 i = 0; i < count; ++i) {
        if (pixels[i] > kMostPixels) return false;
        balance += int64{multiples[i]} * pixels[i];
        magnitude += int64{std::abs(multiples[i])} * pixels[i] * kMiddleLevel;
        parts.multiples[i] = static_cast<int16>(multiples[i]);
    }
    parts.unit = static_cast<float>(unit);
    constexpr int64 kExact = 1 << 24; // whole numbers below it are floats
    return balance == 0 && magnitude < kExact;
}

} // namespace orvane
