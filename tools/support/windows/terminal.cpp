#include "tools/support/terminal.h"

#include <windows.h>

namespace orvane::tools {

int ErrorTerminalWidth() {
    CONSOLE_SCREEN_BUFFER_INFO screen;
    return GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &screen) != 0 ? screen.dwSize.X : 0;
}

} // namespace orvane::tools
