// What each command does. Results go to standard output, one line a photo, failures to standard error.
#pragma once

#include "tools/orvane/options.h"
#include "tools/orvane/report.h"

namespace orvane::tools {

ExitCode RunInfo(const Options& options);
ExitCode RunDetect(const Options& options);
ExitCode RunPortrait(const Options& options);

/// Writes `text` to standard output at once. False, with a line on standard error, when it can't.
bool Print(const std::string& text);

/// A line on standard error, with the program's name in front.
void PrintError(const std::string& line);

} // namespace orvane::tools
