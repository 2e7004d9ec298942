// Drawn portraits: a face on shoulders, on grounds of several kinds.
#pragma once

#include "tests/support/face_scene.h"

#include <algorithm>

namespace orvane::test {

enum class Backdrop { plain, graded, rubble };

/// A person whose face has `side` pixels, a little right of the middle; hands it out as a host would. The
/// plain and the graded backdrop are such that can be told from the person, the rubble is full of edges.
inline Scene PortraitScene(int32 width, int32 height, int32 side, Backdrop backdrop, std::uint32_t seed) {
    Scene scene = BlankScene(width, height);
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            uint8* pixel = scene.Pixel(x, y);
            if (backdrop == Backdrop::plain) {
                pixel[0] = 215;
                pixel[1] = 190;
                pixel[2] = 150;
            } else if (backdrop == Backdrop::graded) {
                pixel[0] = static_cast<uint8>(170 + 40 * x / width);
                pixel[1] = static_cast<uint8>(190 + 30 * y / height);
                pixel[2] = static_cast<uint8>(120 + 20 * x / width);
            } else {
                pixel[0] = static_cast<uint8>(120 + ((x ^ y) & 63));
                pixel[1] = static_cast<uint8>(140 + ((x / 5 + y / 3) % 5) * 16);
                pixel[2] = static_cast<uint8>(110 + (x * y / 8 & 63));
            }
        }
    }
    const int32 left = (width - side) / 2 + 2, bottom = (height - side) / 2;
    for (int32 y = 0; y < bottom; ++y) { // shoulders, and the neck above them
        const int32 wider = y < bottom * 3 / 4 ? side / 2 : -side / 4;
        for (int32 x = std::max(0, left - wider); x < std::min(width, left + side + wider); ++x) {
            scene.Pixel(x, y)[0] = 90;
            scene.Pixel(x, y)[1] = 40;
            scene.Pixel(x, y)[2] = 50;
        }
    }
    DrawFace(scene, left, bottom, side);
    Random random(seed);
    AddTexture(scene, 3, random);
    return scene;
}

} // namespace orvane::test
