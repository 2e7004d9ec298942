// No windows: for the command line, for servers, and for builds without a toolkit.
#include "dialog/none/no_windows.h"
#include "dialog/window_system.h"

namespace orvane {

WindowSystem& ThisWindowSystem() {
    static NoWindows system;
    return system;
}

} // namespace orvane
