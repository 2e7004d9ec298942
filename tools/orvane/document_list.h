// `orvane documents`: what stands in the table of documents.
#pragma once

#include "tools/orvane/options.h"
#include "tools/orvane/report.h"

namespace orvane::tools {

/// Lists the table that comes with the program, or that of the file given: one line a document, or one object with
/// --json.
ExitCode RunDocuments(const Options& options);

} // namespace orvane::tools
