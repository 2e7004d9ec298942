#include "tests/window/sessions/held.h"

#include "tests/window/win32/handle_count.h"

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

namespace orvane::test {
namespace {

int64 Threads() {
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    int64 count = 0;
    for (BOOL more = Thread32First(snapshot, &thread); more; more = Thread32Next(snapshot, &thread)) {
        count += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

} // namespace

Held HeldByThisProcess() {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return {static_cast<int64>(memory.PagefileUsage), int64{handles} + GdiHandles() + UserHandles(), Threads()};
}

} // namespace orvane::test
