#include "tools/support/interrupt.h"

#include <atomic>
#include <windows.h>

namespace orvane::tools {
namespace {

std::atomic<bool> g_interrupted{false};

BOOL WINAPI Remember(DWORD) { return g_interrupted.exchange(true) ? FALSE : TRUE; }

BOOL WINAPI Ignore(DWORD) { return TRUE; }

} // namespace

void CatchInterrupts() { SetConsoleCtrlHandler(Remember, TRUE); }

bool IsInterrupted() { return g_interrupted; }

void IgnoreInterrupts() { SetConsoleCtrlHandler(Ignore, TRUE); }

} // namespace orvane::tools
