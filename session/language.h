// The texts that the operator reads: fifteen rows, which a language file may overlay.
#pragma once

#include "platform/module_folder.h"
#include "primitives/types.h"

#include <array>
#include <string>

namespace orvane {

class LanguageTable {
public:
    static constexpr int32 kRows = 15;

    LanguageTable();

    /// Overlays rows from a file in the library's folder: lines of a decimal index, white space and the
    /// text up to the end of the line, one byte a character. Reading ends at the first line that does not
    /// begin with a number; rows out of range are skipped, texts are cut at 1023 characters. 0, or -10
    /// when the file can't be opened or read, with the table unchanged.
    int32 SetLanguageFile(const char* name);

    /// A row's text; "??" for an index outside the table.
    std::wstring GetLanguageText(int32 index) const;

private:
    std::array<std::wstring, kRows> rows_;
};

} // namespace orvane
