// The command line of `print`, read and checked.
#pragma once

#include "tools/print/sheet_plan.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

struct PrintOptions {
    std::vector<std::string> portraits; ///< Paths as bytes, in the order given.
    std::string output;
    SheetSettings sheets;
    std::optional<PaperSize> size; ///< Of each portrait on paper; none for what its file tells.
    std::optional<int32> dpi;      ///< Of a sheet in pixels; none for 300.
    bool cutMarks = false;
    bool force = false;
    bool help = false;
};

inline constexpr int32 kPlainSheetDpi = 300;
inline constexpr int32 kMostCopies = 1000;

/// Whether `path` names a PDF file.
bool IsPdfName(const std::string& path);

/// Reads the arguments that follow the command's name. False gives `*error` one line.
bool ParsePrintOptions(const std::vector<std::string>& arguments, PrintOptions* options, std::string* error);

} // namespace orvane::tools
