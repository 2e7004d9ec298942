#include "tools/support/terminal.h"

#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

namespace orvane::tools {

int ErrorTerminalWidth() {
    const char* kind = std::getenv("TERM");
    if (::isatty(STDERR_FILENO) == 0 || kind == nullptr || std::strcmp(kind, "dumb") == 0) return 0;
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

} // namespace orvane::tools
