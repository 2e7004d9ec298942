// Sheets of portraits for a printer or a print shop.
#pragma once

#include "tools/orvane/print_options.h"
#include "tools/orvane/report.h"

namespace orvane::tools {

ExitCode RunPrint(const PrintOptions& options);

} // namespace orvane::tools
