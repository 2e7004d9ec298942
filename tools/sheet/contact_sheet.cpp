#include "tools/sheet/contact_sheet.h"

#include "tools/sheet/sheet_canvas.h"
#include "tools/sheet/thumbnail.h"
#include "tools/support/file_identity.h"
#include "tools/support/picture_format.h"
#include "tools/support/picture_io.h"
#include "tools/support/whole_file.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace orvane::tools {
namespace {

// An A4 page in points, and how it is shared out.
constexpr double kPageWidth = 595;
constexpr double kPageHeight = 842;
constexpr double kMargin = 24;
constexpr double kHeading = 16;
constexpr std::size_t kColumns = 6;
constexpr std::size_t kRows = 5;
constexpr std::size_t kPerPage = kColumns * kRows;
constexpr double kGap = 5;
constexpr double kTileWidth = (kPageWidth - 2 * kMargin - kGap * (kColumns - 1)) / kColumns;
constexpr double kTileHeight = (kPageHeight - 2 * kMargin - kHeading - kGap * (kRows - 1)) / kRows;
constexpr double kInside = 3; ///< From a tile's edge to what stands in it.
constexpr double kNameSize = 7;
constexpr double kVerdictSize = 6.5;
constexpr int kVerdictLines = 3;
constexpr double kWords = 42; ///< Height of name and verdict.

constexpr Shade kBlack = {0, 0, 0};
constexpr Shade kGrey = {0.35, 0.35, 0.35};
constexpr Shade kRed = {0.7, 0, 0};

Shade BackOf(SheetRank rank) {
    if (rank == SheetRank::failed) return {1, 0.87, 0.85};
    return rank == SheetRank::worthALook ? Shade{1, 0.95, 0.78} : Shade{0.94, 0.94, 0.94};
}

bool IsPdf(const std::string& path) {
    std::string end = path.size() > 4 ? path.substr(path.size() - 4) : "";
    for (char& c : end) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return end == ".pdf";
}

std::size_t PageCount(std::size_t entries) { return std::max<std::size_t>((entries + kPerPage - 1) / kPerPage, 1); }

void DrawPicture(const std::string& path, const SheetBox& box, SheetCanvas* canvas) {
    Picture picture;
    std::string ignored;
    if (path.empty() || !ReadPicture(path, &picture, &ignored)) return;
    const Picture small =
        Thumbnail(picture, static_cast<int32>(box.width * kSheetScale), static_cast<int32>(box.height * kSheetScale));
    const double scale = std::min(box.width / small.width, box.height / small.height);
    const double width = small.width * scale;
    const double height = small.height * scale;
    canvas->Draw(small, {box.x + (box.width - width) / 2, box.y + (box.height - height) / 2, width, height});
}

void DrawTile(const SheetEntry& entry, double x, double y, SheetCanvas* canvas) {
    canvas->Fill({x, y, kTileWidth, kTileHeight}, BackOf(entry.rank));
    const double width = kTileWidth - 2 * kInside;
    const double words = y + kTileHeight - kWords;
    DrawPicture(entry.picture, {x + kInside, y + kInside, width, words - y - 2 * kInside}, canvas);
    canvas->Write(entry.name, {x + kInside, words, width, kNameSize}, kNameSize, 1, kBlack);
    canvas->Write(entry.verdict, {x + kInside, words + kNameSize + 4, width, kWords}, kVerdictSize, kVerdictLines,
                  entry.rank == SheetRank::failed ? kRed : kGrey);
}

std::string Heading(const std::vector<SheetEntry>& entries, std::size_t page) {
    const auto failed = std::count_if(entries.begin(), entries.end(),
                                      [](const SheetEntry& entry) { return entry.rank == SheetRank::failed; });
    return std::to_string(entries.size()) + " photos, " + std::to_string(failed) + " without a portrait; page " +
           std::to_string(page + 1) + " of " + std::to_string(PageCount(entries.size()));
}

void DrawPage(const std::vector<SheetEntry>& entries, std::size_t page, SheetCanvas* canvas) {
    canvas->Write(Heading(entries, page), {kMargin, kMargin - 4, kPageWidth - 2 * kMargin, kHeading}, 9, 1, kBlack);
    const std::size_t end = std::min(entries.size(), (page + 1) * kPerPage);
    for (std::size_t i = page * kPerPage; i < end; ++i) {
        const std::size_t column = i % kColumns;
        const std::size_t row = i % kPerPage / kColumns;
        DrawTile(entries[i], kMargin + static_cast<double>(column) * (kTileWidth + kGap),
                 kMargin + kHeading + static_cast<double>(row) * (kTileHeight + kGap), canvas);
    }
}

} // namespace

bool CheckSheetName(const std::string& path, std::string* error) {
    const auto format = FormatOfName(path);
    if (!IsPdf(path) && format != PictureFormat::jpeg && format != PictureFormat::png) {
        *error = "--sheet wants a file named .jpg, .png or .pdf, not '" + path + "'";
        return false;
    }
    if (!CanDrawSheets()) *error = "--sheet draws text, which this program does on Linux only";
    return CanDrawSheets();
}

std::vector<std::string> SheetFiles(const std::string& path, std::size_t entries) {
    std::vector<std::string> files{path};
    if (IsPdf(path)) return files;
    const std::size_t dot = path.rfind('.');
    for (std::size_t page = 1; page < PageCount(entries); ++page) {
        files.push_back(path.substr(0, dot) + "-" + std::to_string(page + 1) + path.substr(dot));
    }
    return files;
}

void SortForSheet(std::vector<SheetEntry>* entries) {
    std::stable_sort(entries->begin(), entries->end(),
                     [](const SheetEntry& a, const SheetEntry& b) { return a.rank < b.rank; });
}

bool WriteContactSheet(const std::string& path, std::vector<SheetEntry> entries, bool replace, std::string* error) {
    const std::vector<std::string> files = SheetFiles(path, entries.size());
    const auto fail = [error](const std::string& file, const std::string& why) {
        *error = "the sheet '" + file + "' " + why;
        return false;
    };
    for (const std::string& file : files) {
        if (!replace && IsNameTaken(file)) return fail(file, kNameTaken);
    }
    SortForSheet(&entries);
    const auto canvas = MakeSheetCanvas(IsPdf(path) ? SheetKind::pdf : SheetKind::pictures, kPageWidth, kPageHeight);
    if (canvas == nullptr) return fail(path, "can't be drawn");
    for (std::size_t page = 0; page < PageCount(entries.size()); ++page) {
        DrawPage(entries, page, canvas.get());
        Picture picture;
        canvas->EndPage(&picture);
        if (picture.pixels.empty()) continue;
        if (!WritePicture(files[page], std::move(picture), replace, error)) return fail(files[page], *error);
    }
    std::string document;
    if (!canvas->Finish(&document)) return fail(path, "can't be drawn: not enough memory");
    return document.empty() || WriteWholeFile(path, document, replace, error) || fail(path, *error);
}

} // namespace orvane::tools
