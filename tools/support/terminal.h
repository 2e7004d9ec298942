// The terminal that standard error may be.
#pragma once

namespace orvane::tools {

/// Characters of a line on the terminal that standard error is; 0 where it is none, or one that cannot redraw a line.
int ErrorTerminalWidth();

} // namespace orvane::tools
