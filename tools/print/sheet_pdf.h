// Sheets as the pages of a PDF file, with each portrait's own pixels.
#pragma once

#include "tools/print/printed_portrait.h"
#include "tools/print/sheet_plan.h"

#include <string>
#include <vector>

namespace orvane::tools {

/// A JPEG file goes in as it is, unless its pixels are not what it shows: turned by a note, or with colours of their
/// own. All else goes in without loss. False gives `*error` one line. Throws std::bad_alloc.
bool MakePdf(const SheetPlan& plan, std::vector<PrintedPortrait>& portraits, bool cutMarks, std::string* pdf,
             std::string* error);

} // namespace orvane::tools
