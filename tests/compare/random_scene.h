// Pictures of all kinds for comparing one way of scanning with another.
#pragma once

#include "tests/support/face_scene.h"

namespace orvane::test {

/// A picture with some faces of the drawn kind, on noise, cells or a plain ground.
inline Scene RandomScene(Random& random) {
    const int32 width = random.Int(40, 150), height = random.Int(40, 130);
    Scene scene = BlankScene(width, height, static_cast<uint8>(random.Int(30, 230)));
    const int32 cell = random.Int(3, 30), jump = random.Int(-100, 100);
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            for (int32 c = 0; c < 3; ++c) {
                uint8& level = scene.Pixel(x, y)[c];
                level = static_cast<uint8>(std::clamp(level + (x / cell + y / cell) % 2 * jump, 0, 255));
            }
        }
    }
    for (int32 n = random.Int(0, 3); n > 0; --n)
        DrawFace(scene, random.Int(-10, width), random.Int(-10, height), random.Int(20, 60));
    AddTexture(scene, random.Int(0, 40), random);
    return scene;
}

} // namespace orvane::test
