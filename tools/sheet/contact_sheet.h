// A contact sheet: many small pictures with a name and a verdict each, to be looked at by a person.
#pragma once

#include <string>
#include <vector>

namespace orvane::tools {

enum class SheetRank { failed, worthALook, good };

struct SheetEntry {
    std::string name;
    std::string verdict;
    std::string picture; ///< A file that is shown small; empty for none.
    SheetRank rank = SheetRank::good;
};

/// Whether sheets can be drawn here, and this is the name of one: .jpg, .png or .pdf. False gives `*error` one line.
bool CheckSheetName(const std::string& path, std::string* error);

/// Names of the files that a sheet of so many entries consists of: one PDF, or one picture a page, "sheet.jpg",
/// "sheet-2.jpg" and so on.
std::vector<std::string> SheetFiles(const std::string& path, std::size_t entries);

/// Puts the entries in the order of the sheet: ranks one after the other, each in the order in which it came.
void SortForSheet(std::vector<SheetEntry>* entries);

/// Draws and writes the sheet. Pictures are read one after the other; a picture file that is none leaves its place
/// empty. Without `replace` all names must be free. False gives `*error` one line.
bool WriteContactSheet(const std::string& path, std::vector<SheetEntry> entries, bool replace, std::string* error);

} // namespace orvane::tools
