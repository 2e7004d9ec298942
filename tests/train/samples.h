// Windows, crops and pictures made by a formula: faces are a bright oval with two dark eyes and a dark mouth,
// everything else is blocks and noise.
#pragma once

#include "tools/train/face_crops.h"
#include "tools/train/random.h"
#include "tools/train/scan.h"

#include <cmath>

namespace orvane::train {

inline Window RandomWindow(ImageSize size, Random& random) {
    Window window(static_cast<std::size_t>(size.width * size.height));
    for (uint8& pixel : window) pixel = static_cast<uint8>(random.Below(256));
    return window;
}

inline uint8 FacePixel(double u, double v) { // -1 .. 1 from left to right and from chin to forehead
    const auto near = [&](double x, double y, double r) { return std::hypot(u - x, v - y) < r; };
    if (near(-0.4, 0.3, 0.2) || near(0.4, 0.3, 0.2)) return 30;
    if (std::fabs(u) < 0.4 && std::fabs(v + 0.6) < 0.12) return 60;
    return std::hypot(u, v) < 1.0 ? 190 : 90;
}

inline std::vector<FaceCrop> MadeUpCrops(int count) {
    std::vector<FaceCrop> crops;
    for (int i = 0; i < count; ++i) {
        Random random({99, static_cast<uint64>(i)});
        FaceCrop crop;
        crop.held = i % 4 == 0;
        const double size = random.Between(15.0, 17.0);
        for (int32 y = 0; y < kCropSide; ++y) {
            for (int32 x = 0; x < kCropSide; ++x) {
                const double value = FacePixel((x - 23.5) / size, (y - 23.5) / size) + 8.0 * random.Normal();
                crop.pixels.push_back(static_cast<uint8>(std::min(std::max(value, 0.0), 255.0)));
            }
        }
        crops.push_back(std::move(crop));
    }
    return crops;
}

inline GreyPicture MadeUpPicture(ImageSize size, uint64 seed) {
    GreyPicture picture{size, std::vector<uint8>(static_cast<std::size_t>(size.width * size.height), 120)};
    Random random({7, seed});
    for (int block = 0; block < 60; ++block) {
        const auto x = static_cast<int32>(random.Below(static_cast<uint32>(size.width)));
        const auto y = static_cast<int32>(random.Below(static_cast<uint32>(size.height)));
        const auto w = static_cast<int32>(3 + random.Below(20));
        const auto h = static_cast<int32>(3 + random.Below(20));
        const auto value = static_cast<uint8>(random.Below(256));
        for (int32 j = y; j < std::min(y + h, size.height); ++j) {
            for (int32 i = x; i < std::min(x + w, size.width); ++i) {
                picture.pixels[static_cast<std::size_t>(j * size.width + i)] = value;
            }
        }
    }
    return picture;
}

/// Puts a made-up face of `side` pixels on a picture, its lower left corner at (x, y).
inline void PaintFace(GreyPicture& picture, int32 x, int32 y, int32 side) {
    for (int32 j = 0; j < side; ++j) {
        for (int32 i = 0; i < side; ++i) {
            picture.pixels[static_cast<std::size_t>((y + j) * picture.size.width + x + i)] =
                FacePixel(2.0 * i / (side - 1) - 1.0, 2.0 * j / (side - 1) - 1.0);
        }
    }
}

} // namespace orvane::train
