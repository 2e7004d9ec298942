// What the background removal knows of a picture: the points where background is to be seen, and the levels of a
// mask.
#pragma once

#include "image/image_buffer.h"

#include <array>

namespace orvane {

/// Levels of the mask on its way. In the final mask 0 is the background and all else the picture.
inline constexpr uint8 kMaskUnclassified = 154;
inline constexpr uint8 kMaskBackground = 0; // a background colour; later the background itself
inline constexpr uint8 kMaskSubject = 255;  // hangs together with the core of the face
inline constexpr uint8 kMaskNeither = 100;  // what the subject does not reach

class BackgroundAnalyzer {
public:
    static constexpr int32 kPointsPerSide = 15;

    /// Spreads the sample points along the upper half of the left edge, the top edge and the upper half of
    /// the right edge; the upper rows are those with high numbers. Points of tiny pictures may lie beyond.
    void ComputeSamplePoints(int32 width, int32 height);

    int32 fillLevel = 255;
    std::array<ImagePoint, std::size_t{3} * kPointsPerSide> samplePoints{};
};

} // namespace orvane
