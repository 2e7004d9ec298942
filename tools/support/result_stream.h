// Standard output for results alone. The library prints a note about a failed step to standard output;
// a line of JSON must not meet it there.
#pragma once

#include <string>

namespace orvane::tools {

/// Keeps the standard output of the process for `WriteResult` and sends everything else that is
/// printed there to standard error. To be called once, before anything is printed.
void ReserveResultStream();

/// Writes `text` to the standard output that the process was started with, at once. False when it
/// can't be written.
bool WriteResult(const std::string& text);

/// Writes `text` to standard error.
void WriteMessage(const std::string& text);

} // namespace orvane::tools
