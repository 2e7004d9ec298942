// A small picture out of few choices: a ground, cells, drawn faces, noise.
#pragma once

#include "fuzz/support/choices.h"
#include "tests/support/face_scene.h"

namespace orvane::fuzz {

/// From 1 to `most` pixels a side; mostly with a face that FaceCascade finds.
inline test::Scene SmallScene(Choices& choices, int32 most) {
    const int32 width = choices.Int(1, most), height = choices.Int(1, most);
    test::Scene scene = test::BlankScene(width, height, choices.Byte());
    const int32 cell = choices.Int(1, 32), jump = choices.Int(0, 100);
    for (int32 y = 0; y < height && jump > 0; ++y) {
        for (int32 x = 0; x < width; ++x) {
            uint8* pixel = scene.Pixel(x, y);
            for (int32 c = 0; c < 3; ++c) {
                pixel[c] =
                    static_cast<uint8>(std::clamp(pixel[c] + (x / cell + y / cell) % 2 * jump * (c + 1), 0, 255));
            }
        }
    }
    for (int32 faces = choices.Int(0, 3); faces > 0; --faces) {
        const int32 side = choices.Int(8, 80);
        const int32 left = choices.Int(-8, most), bottom = choices.Int(-8, most);
        test::DrawFace(scene, left, bottom, side);
    }
    test::Random random(choices.Byte());
    if (const int32 noise = choices.Int(-8, 40); noise > 0) test::AddTexture(scene, noise, random);
    return scene;
}

} // namespace orvane::fuzz
