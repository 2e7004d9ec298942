// Rectangle features and the window patches that they are measured on. Rectangles count rows as memory
// does, the lowest row of the picture first; only the classifier file counts from the top.
#pragma once

#include "primitives/types.h"

#include <array>
#include <vector>

namespace orvane::train {

inline constexpr int kMaxRects = 4;

/// Where the pixel (x, y) lies in rows of `width`.
inline std::size_t PixelIndex(int32 x, int32 y, int32 width) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
}

/// Pixels of a picture or window.
inline std::size_t PixelCount(ImageSize size) { return PixelIndex(0, size.height, size.width); }

/// Two to four weighted rectangles in a window whose weighted areas cancel.
struct Feature {
    int rectCount = 0;
    std::array<ImageRect, kMaxRects> rects{};
    std::array<float, kMaxRects> weights{}; // as in the file, before the normalisation by the window's area
};

/// Pixels of one window, row by row, lowest row first.
using Window = std::vector<uint8>;

/// The integral image of one window and the deviation that the detector divides by.
class Patch {
public:
    Patch() = default;
    /// @param pixels windowSize.width * windowSize.height bytes
    Patch(const uint8* pixels, ImageSize windowSize);

    /// The detector's weighted sum: weights times `norm`, everything in double.
    double Measure(const Feature& feature, float norm) const;
    float Deviation() const { return deviation_; }

private:
    std::vector<float> sum_;
    int32 stride_ = 0;
    float deviation_ = 0.0f;
};

/// The factor that `PrepareClassifier` puts on every weight: one over the area inside a border of 1.
float AreaNorm(ImageSize windowSize);

/// `count` distinct features of the kinds that faces need (edges, bars, centre and surround, pairs at a
/// distance, mirrored pairs), the same for the same seed.
std::vector<Feature> MakeFeaturePool(ImageSize windowSize, int count, uint64 seed);

} // namespace orvane::train
