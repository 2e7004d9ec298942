#include "tools/support/append_file.h"

#include "tools/support/windows/system_call.h"
#include "tools/support/windows/wide_text.h"

#include <windows.h>

namespace orvane::tools {
namespace {

bool Fail(std::string* error, DWORD code) {
    *error = code == ERROR_SHARING_VIOLATION ? kInUse : "cannot write: " + SystemErrorText(code);
    return false;
}

HANDLE HandleOf(long long file) { return reinterpret_cast<HANDLE>(static_cast<INT_PTR>(file)); }

} // namespace

bool AppendFile::Open(const std::string& path, Start start, std::string* error) {
    Close();
    // Others may read; FILE_APPEND_DATA alone writes at the end, wherever that is.
    const HANDLE file = CreateFileW(
        Wide(path).c_str(), start == Start::empty ? GENERIC_WRITE : FILE_APPEND_DATA | SYNCHRONIZE, FILE_SHARE_READ,
        nullptr, start == Start::empty ? CREATE_ALWAYS : OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return Fail(error, GetLastError());
    if (GetFileType(file) != FILE_TYPE_DISK) {
        CloseHandle(file);
        *error = "is not a regular file";
        return false;
    }
    file_ = reinterpret_cast<INT_PTR>(file);
    return true;
}

bool AppendFile::Append(const std::string& text, std::string* error) {
    std::size_t done = 0;
    while (done < text.size()) {
        DWORD written = 0;
        if (WriteFile(HandleOf(file_), text.data() + done, static_cast<DWORD>(text.size() - done), &written, nullptr) ==
            0) {
            return Fail(error, GetLastError());
        }
        done += written;
    }
    return true;
}

bool AppendFile::Flush(std::string* error) {
    return FlushFileBuffers(HandleOf(file_)) != 0 || Fail(error, GetLastError());
}

void AppendFile::Close() {
    if (IsOpen()) CloseHandle(HandleOf(file_));
    file_ = kNone;
}

} // namespace orvane::tools
