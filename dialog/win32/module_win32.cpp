#include "dialog/win32/module_win32.h"

#include <cstdint>
#include <cstring>

namespace orvane {
namespace {

using SetContext = void*(WINAPI*)(void*);

// Handles of the system's header, which older ones lack.
void* const kUnaware = reinterpret_cast<void*>(static_cast<std::intptr_t>(-1));
void* const kUnawareGdiScaled = reinterpret_cast<void*>(static_cast<std::intptr_t>(-5));

/// Not before Windows 10, so it is looked up.
SetContext FindSetContext() {
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    const FARPROC found = user == nullptr ? nullptr : GetProcAddress(user, "SetThreadDpiAwarenessContext");
    SetContext result = nullptr;
    static_assert(sizeof result == sizeof found);
    std::memcpy(&result, &found, sizeof result);
    return result;
}

} // namespace

HINSTANCE ThisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&FindSetContext), &module);
    return module;
}

PlainPixels::PlainPixels() {
    const SetContext set = FindSetContext();
    if (set == nullptr) return;
    before_ = set(kUnawareGdiScaled); // null where this form is not known
    if (before_ == nullptr) before_ = set(kUnaware);
}

PlainPixels::~PlainPixels() {
    if (before_ != nullptr) FindSetContext()(before_);
}

} // namespace orvane
