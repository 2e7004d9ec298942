// A classifier that takes a bright square for a face, and photos that hold one: faces that a test can
// place to the pixel.
#pragma once

#include "tests/tools/picture_files.h"

#include <bit>
#include <cstdint>
#include <string>

namespace orvane::tools {

/// The content of an Orvane.dat with one stage of one stump: a window of 24 pixels whose lower left
/// part, two thirds of each side, is bright, and the rest dark. A window's search starts at its lower
/// left corner, which then lies on an edge, as the scan wants it.
inline std::string BrightSquareClassifier() {
    const auto real = [](float value) { return Low32(std::bit_cast<std::uint32_t>(value)); };
    const auto rect = [](std::uint32_t x, std::uint32_t y, std::uint32_t width, std::uint32_t height) {
        return Low32(x) + Low32(y) + Low32(width) + Low32(height);
    };
    const std::string counts = Low32(24) + Low32(24) + Low32(1) + Low32(1) + Low32(3);
    const std::string stage = real(0.5F) + Low32(1) + Low32(0) + Low32(0) + Low32(0);
    const std::string stump = Low32(3) + real(-0.9F) + real(1.0F) + real(0.0F);
    // The whole less the bright part; the third one has no weight and only reaches the window's corners.
    const std::string rects = rect(1, 1, 22, 22) + rect(1, 8, 15, 15) + rect(0, 0, 24, 24);
    const std::string weights = real(1.0F) + real(-484.0F / 225.0F) + real(0.0F);
    return counts + stage + stump + rects + weights;
}

inline constexpr int32 kSquareSide = 80;
/// Side of the face that the detector should find around a bright square, give or take a few pixels:
/// it reaches from the square's lower left corner half a square beyond its upper right one.
inline constexpr int32 kFaceSide = 120;

/// A dark photo with a bright square whose upper left corner is at (x, y).
inline Picture PhotoWithSquare(int32 width, int32 height, int32 x, int32 y) {
    Picture picture = BlackPicture(width, height);
    for (int32 row = 0; row < height; ++row) {
        for (int32 column = 0; column < width; ++column) {
            const bool inside = column >= x && column < x + kSquareSide && row >= y && row < y + kSquareSide;
            SetPixel(picture, column, row, inside ? Colour{200, 200, 200} : Colour{50, 50, 50});
        }
    }
    return picture;
}

/// A photo without any edge.
inline Picture PhotoWithoutFace() { return PhotoWithSquare(200, 200, 1000, 1000); }

} // namespace orvane::tools
