#include "tools/print/sheet_picture.h"

#include "primitives/primitives.h"
#include "tools/print/cut_marks.h"
#include "tools/support/density.h"
#include "tools/support/picture_format.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvane::tools {
namespace {

constexpr int32 kCubic = 4;
constexpr int32 kBoxes = 8;

int32 Pixels(double millimetres, int32 dpi) {
    constexpr double kSettled = 1e-6; // halves go up, however they were summed
    return static_cast<int32>(std::lround(millimetres * dpi / kMillimetresAnInch + kSettled));
}

uint8* PixelAt(Picture* picture, int32 x, int32 y) {
    return picture->pixels.data() + std::ptrdiff_t{picture->step} * (picture->height - 1 - y) + std::ptrdiff_t{3} * x;
}

Picture White(int32 width, int32 height) {
    Picture picture;
    picture.width = width;
    picture.height = height;
    picture.step = PictureStep(width);
    picture.pixels = PixelBlock(PictureBytes(width, height));
    for (int32 y = 0; y < height; ++y) std::memset(PixelAt(&picture, 0, y), 255, static_cast<std::size_t>(width) * 3);
    return picture;
}

void DrawMark(const CutMark& mark, int32 dpi, Picture* sheet) {
    const int32 left = std::max(Pixels(mark.left, dpi), 0);
    const int32 top = std::max(Pixels(mark.top, dpi), 0);
    const int32 right = std::min(std::max(Pixels(mark.right, dpi), left + 1), sheet->width);
    const int32 bottom = std::min(std::max(Pixels(mark.bottom, dpi), top + 1), sheet->height);
    if (left >= right) return;
    for (int32 y = top; y < bottom; ++y) {
        std::memset(PixelAt(sheet, left, y), 0, static_cast<std::size_t>(right - left) * 3);
    }
}

/// The portrait in the sheet's pixels.
bool Scale(const Picture& from, int32 width, int32 height, Picture* scaled) {
    *scaled = White(width, height);
    const double across = static_cast<double>(width) / from.width;
    const double down = static_cast<double>(height) / from.height;
    return primResize_8u_C3(from.pixels.data(), {from.width, from.height}, from.step, {0, 0, from.width, from.height},
                            scaled->pixels.data(), scaled->step, {width, height}, across, down,
                            across <= 1 && down <= 1 ? kBoxes : kCubic) == 0;
}

/// Rows that lie on the sheet, each as far as it does.
void Lay(const Picture& portrait, int32 x, int32 y, Picture* sheet) {
    const int32 from = std::max(-x, 0);
    const int32 to = std::min(portrait.width, sheet->width - x);
    for (int32 row = std::max(-y, 0); row < portrait.height && y + row < sheet->height && from < to; ++row) {
        const uint8* source = portrait.pixels.data() + std::ptrdiff_t{portrait.step} * (portrait.height - 1 - row);
        std::memcpy(PixelAt(sheet, x + from, y + row), source + std::ptrdiff_t{3} * from,
                    static_cast<std::size_t>(to - from) * 3);
    }
}

} // namespace

double InWholePixels(double length, int32 dpi) { return Pixels(length, dpi) * kMillimetresAnInch / dpi; }

PaperSize InWholePixels(const PaperSize& size, int32 dpi) {
    return {InWholePixels(size.width, dpi), InWholePixels(size.height, dpi)};
}

bool DrawSheet(const Sheet& sheet, const PaperSize& paper, const std::vector<PrintedPortrait>& portraits, int32 dpi,
               bool cutMarks, Picture* picture, std::string* error) {
    const int32 width = Pixels(paper.width, dpi);
    const int32 height = Pixels(paper.height, dpi);
    if (!IsPictureSizeAllowed(width, height)) {
        *error = TooLargeText(width, height);
        return false;
    }
    *picture = White(width, height);
    if (cutMarks) {
        for (const CutMark& mark : CutMarks(sheet, paper)) DrawMark(mark, dpi, picture);
    }
    std::vector<Picture> scaled(portraits.size());
    for (const PlacedPortrait& placed : sheet) {
        const Picture* portrait = &portraits[placed.portrait].picture;
        const int32 across = Pixels(placed.size.width, dpi);
        const int32 down = Pixels(placed.size.height, dpi);
        if (across != portrait->width || down != portrait->height) {
            Picture& copy = scaled[placed.portrait];
            if (copy.pixels.empty() && !Scale(*portrait, across, down, &copy)) {
                *error = "a portrait cannot be scaled to the sheet's resolution";
                return false;
            }
            portrait = &copy;
        }
        Lay(*portrait, Pixels(placed.x, dpi), Pixels(placed.y, dpi), picture);
    }
    return true;
}

} // namespace orvane::tools
