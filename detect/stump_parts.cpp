#include "detect/stump_parts.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace orvane {
namespace {

constexpr int32 kMostPixels = 256;      // of a part: -128 * 256 is the least number of 16 bits
constexpr int32 kLargestMultiple = 255; // so that sums of products stay in 32 bits

bool Holds(const ImageRect& outer, const ImageRect& inner) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

/// Where a rectangle begins and ends in a plane of sums.
struct Ends {
    int32 left, right, top, bottom;
};

Ends EndsOf(const ImageRect& r, int32 stride) { return {r.x, r.x + r.width, r.y * stride, (r.y + r.height) * stride}; }

bool SameColumns(const ImageRect& a, const ImageRect& b) { return a.x == b.x && a.width == b.width; }
bool SameRows(const ImageRect& a, const ImageRect& b) { return a.y == b.y && a.height == b.height; }

/// Of a rectangle that the outer one holds.
bool LiesAlongASide(const ImageRect& outer, const ImageRect& inner) {
    const bool atEndOfRows = inner.x == outer.x || inner.x + inner.width == outer.x + outer.width;
    const bool atEndOfColumns = inner.y == outer.y || inner.y + inner.height == outer.y + outer.height;
    return (SameRows(outer, inner) && atEndOfRows) || (SameColumns(outer, inner) && atEndOfColumns);
}

/// Two corners of a rectangle whose sums, the first less the second, make up its sum with those of the opposite side.
struct Side {
    int32 plus, minus;
};

Side LeftOf(const Ends& e) { return {e.top + e.left, e.bottom + e.left}; }
Side RightOf(const Ends& e) { return {e.bottom + e.right, e.top + e.right}; }
Side TopOf(const Ends& e) { return {e.top + e.left, e.top + e.right}; }
Side BottomOf(const Ends& e) { return {e.bottom + e.right, e.bottom + e.left}; }

void FindCornersAlongASide(const ImageRect& outer, const ImageRect& inner, int32 stride, int32* offsets) {
    const Ends a = EndsOf(outer, stride), b = EndsOf(inner, stride);
    const auto put = [offsets](Side first, Side shared, Side second) {
        // The shared one is taken away, so that its sums change places.
        const int32 order[] = {first.plus, first.minus, shared.minus, shared.plus, second.plus, second.minus};
        std::copy(std::begin(order), std::end(order), offsets);
    };
    if (SameRows(outer, inner)) {
        inner.x == outer.x ? put(RightOf(a), LeftOf(a), RightOf(b)) : put(LeftOf(a), RightOf(a), LeftOf(b));
    } else {
        inner.y == outer.y ? put(BottomOf(a), TopOf(a), BottomOf(b)) : put(TopOf(a), BottomOf(a), TopOf(b));
    }
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
        if (!Holds(rects[0], rects[1])) return kTwoRects;
        return LiesAlongASide(rects[0], rects[1]) ? kRectsAlongASide : kNestedRects;
    case 3:
        return kThreeRects;
    case 4:
        return kFourRects;
    default:
        return kOtherRects;
    }
}

void FindCorners(StumpKind kind, const ImageRect* rects, int32 stride, int32* offsets) {
    if (kind == kRectsAlongASide) return FindCornersAlongASide(rects[0], rects[1], stride, offsets);
    for (int32 i = 0; i < kRectsOfKind[kind]; ++i) {
        const Ends e = EndsOf(rects[i], stride);
        for (const int32 offset : {e.bottom + e.right, e.bottom + e.left, e.top + e.right, e.top + e.left})
            *offsets++ = offset;
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
    if (kind == kNestedRects || kind == kRectsAlongASide) {
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
