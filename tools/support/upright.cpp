#include "tools/support/upright.h"

#include "primitives/primitives.h"

#include <cstring>
#include <vector>

namespace orvane::tools {
namespace {

/// Where the upright picture finds its pixels in the stored one: the upper left pixel, and the way
/// to the next pixel of a row and to the next row, all in bytes.
struct Walk {
    std::ptrdiff_t origin;
    std::ptrdiff_t right;
    std::ptrdiff_t down;
    bool turned; ///< Width and height change places.
};

Walk WalkFor(int orientation, const StoredRows& stored) {
    const std::ptrdiff_t pixel = stored.pixel;
    const std::ptrdiff_t row = stored.row;
    const std::ptrdiff_t lastColumn = (stored.width - 1) * pixel;
    const std::ptrdiff_t lastRow = (stored.height - 1) * row;
    switch (orientation) {
    case 2:
        return {lastColumn, -pixel, row, false};
    case 3:
        return {lastColumn + lastRow, -pixel, -row, false};
    case 4:
        return {lastRow, pixel, -row, false};
    case 5:
        return {0, row, pixel, true};
    case 6:
        return {lastRow, -row, pixel, true};
    case 7:
        return {lastColumn + lastRow, -row, -pixel, true};
    case 8:
        return {lastColumn, row, -pixel, true};
    default:
        return {0, pixel, row, false};
    }
}

uint8 OverWhite(unsigned value, unsigned alpha) {
    return static_cast<uint8>((value * alpha + 255 * (255 - alpha) + 127) / 255);
}

void SwapColours(const uint8* from, uint8* to, int32 width) {
    constexpr int32 kOrder[3] = {2, 1, 0};
    primSwapChannels_8u_C3(from, 3 * width, to, 3 * width, {width, 1}, kOrder);
}

/// One row; `blue` and `red` are the places of these samples in a stored pixel.
void ConvertRow(const uint8* from, std::ptrdiff_t next, int blue, bool hasAlpha, uint8* to, int32 width) {
    const int red = 2 - blue;
    if (!hasAlpha && next == 3 && blue == 2) {
        SwapColours(from, to, width);
        return;
    }
    if (!hasAlpha) {
        for (int32 x = 0; x < width; ++x, from += next, to += 3) {
            to[0] = from[blue];
            to[1] = from[1];
            to[2] = from[red];
        }
        return;
    }
    for (int32 x = 0; x < width; ++x, from += next, to += 3) {
        const unsigned alpha = from[3];
        to[0] = alpha == 255 ? from[blue] : OverWhite(from[blue], alpha);
        to[1] = alpha == 255 ? from[1] : OverWhite(from[1], alpha);
        to[2] = alpha == 255 ? from[red] : OverWhite(from[red], alpha);
    }
}

} // namespace

Picture UprightPicture(const StoredRows& stored, int orientation) {
    const Walk walk = WalkFor(orientation, stored);
    Picture picture;
    picture.width = walk.turned ? stored.height : stored.width;
    picture.height = walk.turned ? stored.width : stored.height;
    picture.step = PictureStep(picture.width);
    picture.pixels = PixelBlock(PictureBytes(picture.width, picture.height));
    const uint8* from = stored.pixels + walk.origin;
    for (int32 y = 0; y < picture.height; ++y) {
        uint8* to = RowAt(picture.pixels.data(), picture.step, picture.height - 1 - y);
        ConvertRow(from + walk.down * y, walk.right, stored.redFirst ? 2 : 0, stored.hasAlpha, to, picture.width);
    }
    return picture;
}

void TurnOver(uint8* rows, int32 step, ImageSize size, bool swapColours) {
    const auto used = std::size_t{3} * static_cast<std::size_t>(size.width);
    std::vector<uint8> kept(used);
    const auto copy = [&](const uint8* from, uint8* to) {
        if (swapColours) {
            SwapColours(from, to, size.width);
        } else {
            std::memcpy(to, from, used);
        }
    };
    for (int32 low = 0, high = size.height - 1; low <= high; ++low, --high) {
        copy(RowAt(rows, step, low), kept.data());
        if (low < high) copy(RowAt(rows, step, high), RowAt(rows, step, low));
        std::memcpy(RowAt(rows, step, high), kept.data(), used);
    }
}

} // namespace orvane::tools
