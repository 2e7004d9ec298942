// In a file of its own, so that a program without the library's file may answer in its place.
#include "platform/module_folder.h"

#include <windows.h>

namespace orvane {

ModuleLookup FindModuleFile(PathString& fileName) {
    const HMODULE module = GetModuleHandleW(L"Orvane.dll");
    if (module == nullptr) return ModuleLookup::notLoaded;
    constexpr DWORD kLongest = 1024; // as long as the library's folder may be
    wchar_t name[kLongest + 1];
    const DWORD length = GetModuleFileNameW(module, name, kLongest);
    if (length == 0) return ModuleLookup::noName;
    fileName.assign(name, length);
    return ModuleLookup::found;
}

} // namespace orvane
