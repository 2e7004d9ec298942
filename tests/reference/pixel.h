// The operations on single pixels once more, straight from their rules, one element at a time.
#pragma once

#include "tests/support/plane.h"

#include <array>

namespace orvane::test::reference {

using Bytes = Plane<uint8>;
using Pixel = std::array<uint8, 3>;

/// Calls `body(x, y)` for every pixel of the region.
template <typename Body>
void ForEachPixel(ImageSize roi, Body body) {
    for (int32 y = 0; y < roi.height; ++y) {
        for (int32 x = 0; x < roi.width; ++x) body(x, y);
    }
}

inline void SetMasked(uint8 value, Bytes& dst, ImageSize roi, const Bytes& mask) {
    ForEachPixel(roi, [&](int32 x, int32 y) {
        if (mask.At(x, y)) dst.At(x, y) = value;
    });
}

inline void CopyMasked3(const Bytes& src, Bytes& dst, ImageSize roi, const Bytes& mask) {
    ForEachPixel(roi, [&](int32 x, int32 y) {
        for (int32 c = 0; c < 3; ++c) {
            if (mask.At(x, y)) dst.At(3 * x + c, y) = src.At(3 * x + c, y);
        }
    });
}

inline void SwapChannels(const Bytes& src, Bytes& dst, ImageSize roi, const int32* order) {
    ForEachPixel(roi, [&](int32 x, int32 y) {
        for (int32 c = 0; c < 3; ++c) dst.At(3 * x + c, y) = src.At(3 * x + order[c], y);
    });
}

inline uint8 ThresholdBoth(uint8 v, uint8 thresholdLT, uint8 valueLT, uint8 thresholdGT, uint8 valueGT) {
    if (v > thresholdGT) return valueGT;
    if (v < thresholdLT) return valueLT;
    return v;
}

inline bool Compares(int32 pixel, int32 value, int32 compareOp) {
    const bool holds[] = {pixel<value, pixel <= value, pixel == value, pixel >= value, pixel> value};
    return holds[compareOp];
}

inline uint8 Grey(const Pixel& c) { return static_cast<uint8>((1225 * c[0] + 2404 * c[1] + 467 * c[2]) / 4096); }

/// Hue, saturation, value of one pixel.
inline Pixel Hsv(const Pixel& c) {
    int largest = c[0], smallest = c[0];
    for (int i = 1; i < 3; ++i) {
        if (c[i] > largest) largest = c[i];
        if (c[i] < smallest) smallest = c[i];
    }
    if (largest == 0 || largest == smallest) return {0, 0, static_cast<uint8>(largest)};
    const double d = largest - smallest;
    const double i = 1 / d;
    const double saturation = d / largest * 255 + 0.499999;
    const double r = (largest - c[0]) * i, g = (largest - c[1]) * i, b = (largest - c[2]) * i;
    double h = 0;
    if (c[0] == largest) h = b - g;
    if (c[1] == largest) h = 2 + r - b;
    if (c[2] == largest) h = 4 + g - r;
    h = h * 255 / 6;
    if (h < 0) h = h + 255;
    return {static_cast<uint8>(static_cast<int>(h + 0.499999)), static_cast<uint8>(static_cast<int>(saturation)),
            static_cast<uint8>(largest)};
}

} // namespace orvane::test::reference
