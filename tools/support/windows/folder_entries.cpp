#include "tools/support/folder_entries.h"

#include "tools/support/utf8.h"
#include "tools/support/windows/system_call.h"
#include "tools/support/windows/wide_text.h"

#include <algorithm>
#include <windows.h>

namespace orvane::tools {
namespace {

bool Fail(std::string* error, const char* what, DWORD code) {
    *error = std::string(what) + ": " + SystemErrorText(code);
    return false;
}

} // namespace

bool ListFolder(const std::string& path, std::vector<FolderEntry>* entries, std::string* error) {
    entries->clear();
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(Wide(path + "/*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return Fail(error, "cannot open the folder", GetLastError());
    do {
        const std::string name = Utf8(found.cFileName);
        if (name == "." || name == "..") continue;
        entries->push_back({name, (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
    } while (FindNextFileW(search, &found) != 0);
    const DWORD code = GetLastError();
    FindClose(search);
    std::sort(entries->begin(), entries->end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return code == ERROR_NO_MORE_FILES || Fail(error, "cannot read the folder", code);
}

bool MakeFoldersBelow(const std::string& base, const std::string& name, std::string* error) {
    for (std::size_t slash = name.find('/'); slash != std::string::npos; slash = name.find('/', slash + 1)) {
        const std::wstring folder = Wide(base + "/" + name.substr(0, slash));
        if (CreateDirectoryW(folder.c_str(), nullptr) == 0 && GetLastError() != ERROR_ALREADY_EXISTS) {
            return Fail(error, "cannot make its folder", GetLastError());
        }
    }
    return true;
}

std::string WithSlashes(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

} // namespace orvane::tools
