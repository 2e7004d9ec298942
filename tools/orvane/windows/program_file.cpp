// The library is part of this program, so its file is the program's. Stands for the lookup of platform/windows, and so
// goes into the program itself: from an archive the linker might take the other one.
#include "platform/module_folder.h"

#include <windows.h>

namespace orvane {

ModuleLookup FindModuleFile(PathString& fileName) {
    constexpr DWORD kLongest = 1024; // as long as the library's folder may be
    wchar_t name[kLongest + 1];
    const DWORD length = GetModuleFileNameW(nullptr, name, kLongest);
    if (length == 0) return ModuleLookup::noName;
    fileName.assign(name, length);
    return ModuleLookup::found;
}

} // namespace orvane
