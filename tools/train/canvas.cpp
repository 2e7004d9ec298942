#include "tools/train/canvas.h"

#include "primitives/types.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstddef>

namespace orvane::train {
namespace {

/// A letter of 3 by 5 dots: an octal digit a row, from the top.
struct Letter {
    char sign;
    int rows;
};
constexpr std::array<Letter, 49> kLetters = {{
    {'0', 075557}, {'1', 026227}, {'2', 071747}, {'3', 071717}, {'4', 055711},  {'5', 074717}, {'6', 074757},
    {'7', 071111}, {'8', 075757}, {'9', 075717}, {'A', 025755}, {'B', 065656},  {'C', 034443}, {'D', 065556},
    {'E', 074647}, {'F', 074644}, {'G', 034553}, {'H', 055755}, {'I', 072227},  {'J', 011152}, {'K', 055655},
    {'L', 044447}, {'M', 057755}, {'N', 065555}, {'O', 025552}, {'P', 065644},  {'Q', 025563}, {'R', 065655},
    {'S', 034216}, {'T', 072222}, {'U', 055557}, {'V', 055522}, {'W', 055775},  {'X', 055255}, {'Y', 055222},
    {'Z', 071247}, {' ', 000000}, {'.', 000002}, {',', 000024}, {':', 002020},  {'-', 000700}, {'_', 000007},
    {'/', 011244}, {'(', 012221}, {')', 042224}, {'%', 051245}, {'\'', 022000}, {'+', 002720}, {'?', 071202},
}};
constexpr int32 kDot = 2;

int RowsOf(char sign) {
    const char capital = static_cast<char>(std::toupper(static_cast<unsigned char>(sign)));
    const auto at = std::find_if(kLetters.begin(), kLetters.end(), [&](const Letter& l) { return l.sign == capital; });
    return at == kLetters.end() ? kLetters.back().rows : at->rows;
}

uint8* AddressOf(tools::Picture& picture, int32 x, int32 y) {
    return RowAt(picture.pixels.data(), picture.step, picture.height - 1 - y) + std::ptrdiff_t{3} * x;
}
const uint8* AddressOf(const tools::Picture& picture, int32 x, int32 y) {
    return RowAt(picture.pixels.data(), picture.step, picture.height - 1 - y) + std::ptrdiff_t{3} * x;
}

/// The source's pixels that make up pixel `at` of `to`, of `from` in all.
std::pair<int32, int32> SourceRange(int32 at, int32 from, int32 to) {
    const auto first = static_cast<int32>(int64{at} * from / to);
    return {first, std::max(first + 1, static_cast<int32>((int64{at} + 1) * from / to))};
}

int32 Rounded(double value) { return static_cast<int32>(std::lround(std::clamp(value, -1e6, 1e6))); }

} // namespace

tools::Picture Blank(int32 width, int32 height, Colour colour) {
    tools::Picture picture{width, height, tools::PictureStep(width), {}};
    picture.pixels = tools::PixelBlock(tools::PictureBytes(width, height));
    FillArea(picture, 0, 0, width, height, colour);
    return picture;
}

tools::Picture Resized(const tools::Picture& picture, int32 side) {
    const int32 longest = std::max(picture.width, picture.height);
    const auto scaled = [&](int32 length) { return std::max(1, static_cast<int32>(int64{length} * side / longest)); };
    tools::Picture small = Blank(scaled(picture.width), scaled(picture.height), {0, 0, 0});
    for (int32 y = 0; y < small.height; ++y) {
        const auto [top, bottom] = SourceRange(y, picture.height, small.height);
        for (int32 x = 0; x < small.width; ++x) {
            const auto [left, right] = SourceRange(x, picture.width, small.width);
            for (int channel = 0; channel < 3; ++channel) {
                int64 sum = 0;
                for (int32 j = top; j < bottom; ++j) {
                    for (int32 i = left; i < right; ++i) sum += AddressOf(picture, i, j)[channel];
                }
                const int64 count = int64{bottom - top} * (right - left);
                AddressOf(small, x, y)[channel] = static_cast<uint8>((sum + count / 2) / count);
            }
        }
    }
    return small;
}

Colour PixelAt(const tools::Picture& picture, int32 x, int32 y) {
    const uint8* pixel = AddressOf(picture, x, y);
    return {pixel[2], pixel[1], pixel[0]};
}

void FillArea(tools::Picture& picture, int32 x, int32 y, int32 width, int32 height, Colour colour) {
    for (int32 j = std::max(y, 0); j < std::min(y + height, picture.height); ++j) {
        for (int32 i = std::max(x, 0); i < std::min(x + width, picture.width); ++i) {
            uint8* pixel = AddressOf(picture, i, j);
            pixel[0] = colour.blue;
            pixel[1] = colour.green;
            pixel[2] = colour.red;
        }
    }
}

void DrawSquare(tools::Picture& picture, const FaceSquare& square, Colour colour) {
    constexpr int32 kThick = 2;
    const int32 left = Rounded(square.x);
    const int32 top = Rounded(square.y);
    const int32 side = Rounded(square.side);
    FillArea(picture, left, top, side, kThick, colour);
    FillArea(picture, left, top + side - kThick, side, kThick, colour);
    FillArea(picture, left, top, kThick, side, colour);
    FillArea(picture, left + side - kThick, top, kThick, side, colour);
}

void Paste(const tools::Picture& from, tools::Picture& onto, int32 x, int32 y) {
    for (int32 j = 0; j < from.height; ++j) {
        for (int32 i = 0; i < from.width; ++i) FillArea(onto, x + i, y + j, 1, 1, PixelAt(from, i, j));
    }
}

void DrawText(tools::Picture& picture, int32 x, int32 y, const std::string& text, Colour colour) {
    for (const char sign : text) {
        for (int32 row = 0; row < 5; ++row) {
            const int dots = RowsOf(sign) >> (3 * (4 - row));
            for (int32 column = 0; column < 3; ++column) {
                if ((dots >> (2 - column) & 1) == 0) continue;
                FillArea(picture, x + column * kDot, y + row * kDot, kDot, kDot, colour);
            }
        }
        x += kLetterWidth;
    }
}

} // namespace orvane::train
