// The contrast stretch once more, as it was thought out: a walk of the picture for every band of levels,
// and five operations on whole pictures.
#pragma once

#include "image/image_buffer.h"
#include "primitives/primitives.h"

namespace orvane::test::reference {

struct ClipBounds {
    int32 low, high;
};

/// The bounds of a picture of three channels.
inline ClipBounds FindBounds(const ImageBuffer& image, float fraction) {
    const auto count = [&](int32 lowest, int32 highest, int32* counts) {
        const auto from = static_cast<uint8>(lowest), to = static_cast<uint8>(highest);
        const uint8 lower[3] = {from, from, from}, upper[3] = {to, to, to};
        primCountInRange_8u_C3(image.data, image.Step(), image.Size(), counts, lower, upper);
    };
    int32 total[3] = {}, counts[3] = {};
    const auto anyReaches = [&] {
        for (int32 c = 0; c < 3; ++c) {
            if (total[c] != 0 && !(static_cast<double>(counts[c]) / total[c] < fraction)) return true;
        }
        return false;
    };
    count(1, 254, total);
    int32 b = 5;
    for (;;) {
        count(254 - b, 254, counts);
        b += 2;
        if (anyReaches() || b >= 255) break;
    }
    const int32 high = 254 - b;
    b = 2;
    for (;;) {
        count(1, b, counts);
        b += 2;
        if (anyReaches() || b >= 255) break;
    }
    return {b, high};
}

inline void Stretch(ImageBuffer& image, ClipBounds bounds) {
    const auto subtracted = static_cast<uint8>(bounds.low);
    const uint8 lows[3] = {subtracted, subtracted, subtracted};
    const float factor = 255.0F / static_cast<float>(bounds.high - bounds.low);
    const float factors[3] = {factor, factor, factor};
    ImageBuffer wide;
    wide.Create(image.width, image.height, 3, kDepth32f, 0);
    auto* floats = reinterpret_cast<float*>(wide.data);
    primSubC_8u_C3ISfs(lows, image.data, image.Step(), image.Size(), 0);
    primConvert_8u32f_C3(image.data, image.Step(), floats, wide.Step(), image.Size());
    primMulC_32f_C3I(factors, floats, wide.Step(), image.Size());
    primConvert_32f8u_C3(floats, wide.Step(), image.data, image.Step(), image.Size(), 1);
}

inline void CorrectColours(const ImageBuffer& source, ImageBuffer& destination) {
    destination.CopyFrom(source);
    if (source.data == nullptr || source.channels != 3) return;
    Stretch(destination, FindBounds(destination, 0.05F));
}

} // namespace orvane::test::reference
