#include "platform/process_end.h"

#include <windows.h>

#include <cstring>

namespace __gnu_cxx {
void __freeres(); // the language library's own
}

namespace orvane {
namespace {

// The language library is part of this file, and with it the room that it keeps for throwing when memory is exhausted:
// each load would leave that behind.
[[gnu::destructor]] void FreeRoomForThrowing() { __gnu_cxx::__freeres(); }

} // namespace

bool IsProcessEnding() {
    using Question = BOOLEAN(WINAPI*)();
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    const FARPROC found = system == nullptr ? nullptr : GetProcAddress(system, "RtlDllShutdownInProgress");
    if (found == nullptr) return false;
    Question ask = nullptr;
    static_assert(sizeof ask == sizeof found);
    std::memcpy(&ask, &found, sizeof ask);
    return ask() != 0;
}

} // namespace orvane
