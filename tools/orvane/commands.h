// What each command does. Results go to standard output, one line a photo, failures to standard error.
#pragma once

#include "tools/documents/document.h"
#include "tools/orvane/host.h"
#include "tools/orvane/options.h"
#include "tools/orvane/output_names.h"
#include "tools/orvane/report.h"

namespace orvane::tools {

ExitCode RunInfo(const Options& options);

/// The face in one photo, with the groups of hits where `options` wants them.
PhotoReport FaceOf(Host& host, const std::string& photo, const Options& options);

/// The measures of one photo, of its face or of one that `options` has marked by hand; `document` may be null.
PhotoReport CheckOf(Host& host, const std::string& photo, const Options& options, const Document* document);

/// Where a portrait goes that is more than a file.
class PortraitPlace {
public:
    virtual ~PortraitPlace() = default;
    /// Notes in `report` what became of it.
    virtual void Put(Picture&& portrait, const PortraitFile& file, PhotoReport* report) = 0;
};

/// The portrait of one photo, as a file of its planned name or, where `place` is not null, put there.
PhotoReport PortraitOf(Host& host, const std::string& photo, const PlannedOutput& output, const Options& options,
                       PortraitPlace* place);

/// Writes `text` to standard output at once. False, with a line on standard error, when it can't.
bool Print(const std::string& text);

/// A line on standard error, with the program's name in front.
void PrintError(const std::string& line);

} // namespace orvane::tools
