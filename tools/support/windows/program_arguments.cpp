#include "tools/support/program_arguments.h"

#include "tools/support/utf8.h"

// windows.h first: the other needs its types.
#include <windows.h>

#include <shellapi.h>

#include <algorithm>

namespace orvane::tools {
namespace {

/// The files that a pattern in a path's last part stands for, in the order of their names. None for a path without a
/// pattern; folders and hidden files are left out.
std::vector<std::wstring> FilesLike(const std::wstring& path) {
    const std::size_t separator = path.find_last_of(L"\\/:");
    const std::size_t name = separator == std::wstring::npos ? 0 : separator + 1;
    std::vector<std::wstring> files;
    if (path.find_first_of(L"*?", name) == std::wstring::npos) return files;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return files;
    do {
        constexpr DWORD kOthers = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN;
        if ((found.dwFileAttributes & kOthers) == 0) files.push_back(path.substr(0, name) + found.cFileName);
    } while (FindNextFileW(search, &found) != 0);
    FindClose(search);
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

// What shells do elsewhere is a program's own affair here.
std::vector<std::string> ProgramArguments(int, char**) {
    std::vector<std::string> texts;
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (arguments == nullptr) return texts;
    for (int i = 1; i < count; ++i) {
        const std::vector<std::wstring> files = FilesLike(arguments[i]);
        for (const std::wstring& file : files) texts.push_back(Utf8(file));
        if (files.empty()) texts.push_back(Utf8(arguments[i]));
    }
    LocalFree(arguments);
    return texts;
}

} // namespace orvane::tools
