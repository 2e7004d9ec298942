// A drawn face and the cascade that finds it.
//
// The face is a square: dark on top and at the sides, bright in the middle, a little less dark at the
// bottom. It stands on a light, textured ground. The cascade asks in its first stage for a middle
// brighter than all around, in its second for one brighter than each side, and in its third for a
// bottom brighter than the top, so that a face that stands on its head is none.
#pragma once

#include "tests/support/cascade_builder.h"
#include "tests/support/random.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace orvane::test {

/// The pixels of a 24-bit picture as they lie in a packed bitmap: bottom row first, blue, green, red,
/// rows padded with zeros to a multiple of 4 bytes.
struct Scene {
    int32 width, height;
    std::vector<uint8> rows;

    int32 Step() const { return (3 * width + 3) / 4 * 4; }
    uint8* Pixel(int32 x, int32 y) {
        return rows.data() + static_cast<std::ptrdiff_t>(Step()) * y + std::ptrdiff_t{3} * x;
    }
};

/// One colour everywhere.
inline Scene BlankScene(int32 width, int32 height, uint8 level = 200) {
    Scene scene{width, height, {}};
    scene.rows.resize(static_cast<std::size_t>(scene.Step()) * static_cast<std::size_t>(height));
    for (int32 y = 0; y < height; ++y) std::fill_n(scene.Pixel(0, y), 3 * width, level);
    return scene;
}

/// Adds up to `amplitude` levels of noise either way, each channel for itself.
inline void AddTexture(Scene& scene, int32 amplitude, Random& random) {
    for (int32 y = 0; y < scene.height; ++y) {
        for (int32 i = 0; i < 3 * scene.width; ++i) {
            uint8& level = scene.Pixel(0, y)[i];
            level = static_cast<uint8>(std::clamp(level + random.Int(-amplitude, amplitude), 0, 255));
        }
    }
}

/// Draws a face of `side` pixels whose bottom left pixel is column `left` of row `bottom`, rows counted
/// from the bottom. What lies beyond the picture is left out.
inline void DrawFace(Scene& scene, int32 left, int32 bottom, int32 side) {
    for (int32 y = std::max(0, bottom); y < std::min(scene.height, bottom + side); ++y) {
        for (int32 x = std::max(0, left); x < std::min(scene.width, left + side); ++x) {
            const int32 across = 4 * (x - left) / side;
            const int32 up = 4 * (y - bottom) / side;
            const bool middle = (across == 1 || across == 2) && (up == 1 || up == 2);
            std::fill_n(scene.Pixel(x, y), 3, static_cast<uint8>(middle ? 200 : up == 0 ? 90 : 40));
        }
    }
}

/// A light textured ground with one face.
inline Scene FaceScene(int32 width, int32 height, int32 left, int32 bottom, int32 side, std::uint32_t seed = 1) {
    Random random(seed);
    Scene scene = BlankScene(width, height);
    DrawFace(scene, left, bottom, side);
    AddTexture(scene, 6, random);
    return scene;
}

/// The same picture standing on its head.
inline Scene UpsideDown(Scene scene) {
    for (int32 y = 0; y < scene.height / 2; ++y) {
        std::swap_ranges(scene.Pixel(0, y), scene.Pixel(0, y) + scene.Step(), scene.Pixel(0, scene.height - 1 - y));
    }
    return scene;
}

/// The cascade that finds the drawn face, with a window of 24 by 24.
inline CascadeFile FaceCascade() {
    const ImageRect middle{6, 6, 12, 12};
    const auto brighterMiddle = [&](const ImageRect& side, float threshold) {
        return WeakClassifier{{{middle, 1.0F}, {side, -2.0F}}, threshold};
    };
    const CascadeStage brightMiddle{{{{{{0, 0, 24, 24}, -1.0F}, {middle, 4.0F}}, 1.0F}}};
    const CascadeStage darkAround{{brighterMiddle({0, 6, 6, 12}, 0.4F), brighterMiddle({18, 6, 6, 12}, 0.4F),
                                   brighterMiddle({6, 0, 12, 6}, 0.4F), brighterMiddle({6, 18, 12, 6}, 0.2F)},
                                  3.5F};
    const CascadeStage brighterBottom{{{{{{0, 18, 24, 6}, 1.0F}, {{0, 0, 24, 6}, -1.0F}}, 0.08F}}};
    return BuildCascade({24, 24}, {brightMiddle, darkAround, brighterBottom});
}

} // namespace orvane::test
