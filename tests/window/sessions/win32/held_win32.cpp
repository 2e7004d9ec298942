#include "tests/window/sessions/held.h"

#include "tests/window/win32/handle_count.h"

#include <windows.h>

#include <psapi.h>

namespace orvane::test {

Held HeldByThisProcess() {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return {static_cast<int64>(memory.PagefileUsage), int64{handles} + GdiHandles() + UserHandles()};
}

} // namespace orvane::test
