// The contact sheet of a run: what it tells of each photo, and its file at the end.
#pragma once

#include "tools/orvane/photo_selection.h"
#include "tools/orvane/report.h"
#include "tools/sheet/contact_sheet.h"

#include <string>
#include <vector>

namespace orvane::tools {

/// How a photo stands on the sheet. A photo that gave no portrait is shown itself, where it could be read.
SheetEntry SheetEntryOf(const PhotoReport& report);

class RunSheet {
public:
    /// Whether the sheet can be written, as far as that is known before the run. False gives `*error` one line.
    bool Open(const Options& options, const PhotoSelection& selection, std::string* error);
    void Add(const PhotoReport& report);
    /// Nothing where no sheet was asked for. False gives `*error` one line.
    bool Write(std::string* error);

private:
    std::string path_;
    bool replace_ = false;
    std::vector<SheetEntry> entries_;
};

} // namespace orvane::tools
