#include "tools/train/sheets.h"

#include "tools/support/picture_io.h"

#include <algorithm>
#include <filesystem>

namespace orvane::train {
namespace {

constexpr Colour kBackground{32, 32, 32};
constexpr Colour kTitleColour{255, 255, 255};
constexpr Colour kRemarkColour{255, 210, 90};
constexpr int32 kLineHeight = kLetterHeight + 4;
constexpr int32 kCellWidth = kThumbnailSide + kSheetMargin;
constexpr int32 kCellHeight = kThumbnailSide + 2 * kLineHeight + kSheetMargin;
constexpr std::size_t kCellsPerSheet = static_cast<std::size_t>(kSheetColumns) * kSheetRows;

/// So many letters find room below a thumbnail.
constexpr std::size_t kMostLetters = kThumbnailSide / kLetterWidth;

/// The end of a title, where file names differ.
std::string EndOf(const std::string& text) {
    return text.size() <= kMostLetters ? text : text.substr(text.size() - kMostLetters);
}

} // namespace

void ContactSheets::Add(const tools::Picture& picture, const std::vector<Mark>& marks, std::string title,
                        std::string remark) {
    Cell cell{Resized(picture, kThumbnailSide), std::move(title), std::move(remark)};
    const double factor = static_cast<double>(cell.thumbnail.width) / picture.width;
    for (const Mark& mark : marks) {
        const FaceSquare& s = mark.square;
        DrawSquare(cell.thumbnail, {s.x * factor, s.y * factor, s.side * factor}, mark.colour);
    }
    cells_.push_back(std::move(cell));
}

std::string ContactSheets::FileOf(std::size_t number) const { return stem_ + "-" + std::to_string(number) + ".png"; }

tools::Picture ContactSheets::Sheet(std::size_t first) const {
    const auto count = static_cast<int32>(std::min(cells_.size() - first, kCellsPerSheet));
    const int32 columns = std::min(count, kSheetColumns);
    const int32 rows = (count + kSheetColumns - 1) / kSheetColumns;
    tools::Picture sheet = Blank(columns * kCellWidth + kSheetMargin, rows * kCellHeight + kSheetMargin, kBackground);
    for (int32 i = 0; i < count; ++i) {
        const Cell& cell = cells_[first + static_cast<std::size_t>(i)];
        const int32 x = kSheetMargin + i % kSheetColumns * kCellWidth;
        const int32 y = kSheetMargin + i / kSheetColumns * kCellHeight;
        Paste(cell.thumbnail, sheet, x, y);
        DrawText(sheet, x, y + kThumbnailSide + 3, EndOf(cell.title), kTitleColour);
        DrawText(sheet, x, y + kThumbnailSide + 3 + kLineHeight, cell.remark.substr(0, kMostLetters), kRemarkColour);
    }
    return sheet;
}

bool ContactSheets::Write(std::string& error) const {
    std::size_t number = 1;
    for (std::size_t first = 0; first < cells_.size(); first += kCellsPerSheet, ++number) {
        if (tools::WritePicture(FileOf(number), Sheet(first), true, &error)) continue;
        error = FileOf(number) + ": " + error;
        return false;
    }
    std::error_code ignored;
    while (std::filesystem::remove(FileOf(number), ignored)) ++number;
    return true;
}

} // namespace orvane::train
