// A drawn person before a backdrop, by integer arithmetic alone: the same bytes on every system.
#pragma once

#include "detect/candidates.h"
#include "image/image_buffer.h"
#include "tests/support/random.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace orvane::test {

/// A colour as it lies in memory.
struct Bgr {
    uint8 blue, green, red;
};

inline constexpr Bgr kBlueBackdrop{200, 120, 40};
inline constexpr Bgr kGreyBackdrop{181, 180, 182};
inline constexpr Bgr kSkin{120, 160, 225};

struct Portrait {
    int32 width = 120, height = 150;
    Bgr backdrop = kBlueBackdrop;
    Bgr person = kSkin;
    Bgr clothes = {30, 40, 140};
    int32 noise = 0; // levels up or down
    std::uint32_t seed = 1;
};

/// The head is round, a third of the picture wide, in the middle; the shoulders stand below it, which is
/// towards row 0, and reach the lower edge.
inline FaceRecord FaceOf(const Portrait& p) { return {p.width / 2, p.height / 2, p.width / 3, p.width / 3}; }

inline uint8* PixelAt(ImageBuffer& picture, int32 x, int32 y) {
    return RowAt(picture.data, picture.Step(), y) + static_cast<std::ptrdiff_t>(x) * picture.channels;
}
inline const uint8* PixelAt(const ImageBuffer& picture, int32 x, int32 y) {
    return RowAt(picture.data, picture.Step(), y) + static_cast<std::ptrdiff_t>(x) * picture.channels;
}

inline void PaintPixel(ImageBuffer& picture, int32 x, int32 y, Bgr colour) {
    uint8* pixel = PixelAt(picture, x, y);
    pixel[0] = colour.blue;
    pixel[1] = colour.green;
    pixel[2] = colour.red;
}

inline void DrawPortrait(const Portrait& p, ImageBuffer& picture) {
    if (!picture.Create(p.width, p.height, 3, kDepth8u, 0)) std::abort();
    Random random(p.seed);
    const FaceRecord face = FaceOf(p);
    const int32 radius = std::max(face.faceWidth / 2, 1);
    for (int32 y = 0; y < p.height; ++y) {
        for (int32 x = 0; x < p.width; ++x) {
            const int32 dx = x - face.centreX, dy = y - face.centreY;
            const bool head = dx * dx + dy * dy <= radius * radius;
            const bool shoulders = dy < 0 && y < face.centreY - radius * 2 / 3 && std::abs(dx) <= radius * 2;
            PaintPixel(picture, x, y, head ? p.person : shoulders ? p.clothes : p.backdrop);
            for (int32 c = 0; c < 3 && p.noise > 0; ++c) {
                uint8& level = PixelAt(picture, x, y)[c];
                level = static_cast<uint8>(std::clamp(level + random.Int(-p.noise, p.noise), 0, 255));
            }
        }
    }
}

} // namespace orvane::test
