// Ctrl-C and the system's requests to end, as a question that a program asks where it can end cleanly.
#pragma once

namespace orvane::tools {

/// From now on the first request is only remembered. A second one ends the process as usual.
void CatchInterrupts();

/// Whether a request came since CatchInterrupts.
bool IsInterrupted();

/// For a process whose parent decides: requests, which a terminal sends to both, are not heard.
void IgnoreInterrupts();

} // namespace orvane::tools
