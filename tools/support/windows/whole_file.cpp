#include "tools/support/whole_file.h"

#include "tools/support/file_identity.h"
#include "tools/support/windows/system_call.h"
#include "tools/support/windows/wide_text.h"

#include <algorithm>
#include <windows.h>

namespace orvane::tools {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool Fail(std::string* error, const char* what, DWORD code) {
    *error = std::string(what) + ": " + SystemErrorText(code);
    return false;
}

/// Consoles, pipes and devices have names too, in every folder.
bool IsNoRegularFile(const std::string& path, std::string* error) {
    if (IsFolder(path)) {
        *error = "is a folder";
        return true;
    }
    const SystemHandle file(CreateFileW(Wide(path).c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file.IsOpen() || GetFileType(file.Get()) == FILE_TYPE_DISK) return false;
    *error = "is not a regular file";
    return true;
}

bool WriteAll(HANDLE file, const std::string& content) {
    std::size_t done = 0;
    while (done < content.size()) {
        const auto piece = static_cast<DWORD>(std::min<std::size_t>(content.size() - done, 1U << 24));
        DWORD written = 0;
        if (WriteFile(file, content.data() + done, piece, &written, nullptr) == 0) return false;
        done += written;
    }
    return true;
}

constexpr int kAttempts = 100;

/// A name beside `path` that no other process uses.
std::wstring TemporaryName(const std::string& path, std::uint64_t process, int attempt) {
    const std::size_t separator = path.find_last_of("/\\:");
    const std::string folder = separator == std::string::npos ? "" : path.substr(0, separator + 1);
    return Wide(folder + ".orvane-" + std::to_string(process) + "-" + std::to_string(attempt) + ".tmp");
}

/// Creates a file of a free name beside `path`. INVALID_HANDLE_VALUE leaves the error to GetLastError.
HANDLE CreateTemporary(const std::string& path, std::wstring* temporary) {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        *temporary = TemporaryName(path, GetCurrentProcessId(), attempt);
        HANDLE file =
            CreateFileW(temporary->c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS) return file;
    }
    return INVALID_HANDLE_VALUE;
}

} // namespace

bool ReadWholeFile(const std::string& path, std::string* content, std::string* error) {
    content->clear();
    if (IsNoRegularFile(path, error)) return false;
    const SystemHandle file(CreateFileW(Wide(path).c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file.IsOpen()) return Fail(error, "cannot open", GetLastError());
    char block[65536];
    for (;;) {
        DWORD n = 0;
        if (ReadFile(file.Get(), block, sizeof block, &n, nullptr) == 0) {
            return Fail(error, "cannot read", GetLastError());
        }
        if (n == 0) return true;
        content->append(block, n);
    }
}

bool WriteWholeFile(const std::string& path, const std::string& content, bool force, std::string* error) {
    if (IsNoRegularFile(path, error)) return false;
    std::wstring temporary;
    SystemHandle file(CreateTemporary(path, &temporary));
    if (!file.IsOpen()) return Fail(error, "cannot write", GetLastError());
    bool good = WriteAll(file.Get(), content) && FlushFileBuffers(file.Get()) != 0;
    DWORD code = GetLastError();
    file.Close();
    if (good) {
        // Without leave to replace, the system refuses a name that is taken in the same call.
        const DWORD replace = force ? MOVEFILE_REPLACE_EXISTING : 0;
        good = MoveFileExW(temporary.c_str(), Wide(path).c_str(), replace | MOVEFILE_WRITE_THROUGH) != 0;
        code = GetLastError();
    }
    if (good) return true;
    DeleteFileW(temporary.c_str());
    if (!force && (code == ERROR_ALREADY_EXISTS || code == ERROR_FILE_EXISTS)) {
        *error = kNameTaken;
        return false;
    }
    return Fail(error, "cannot write", code);
}

bool CanWriteWholeFile(const std::string& path, bool force, std::string* error, const std::string& trial) {
    if (IsNoRegularFile(path, error)) return false;
    if (!force && IsNameTaken(path)) {
        *error = kNameTaken;
        return false;
    }
    std::wstring temporary;
    SystemHandle file(CreateTemporary(path, &temporary));
    if (!file.IsOpen()) return Fail(error, "cannot write", GetLastError());
    const bool good = trial.empty() || (WriteAll(file.Get(), trial) && FlushFileBuffers(file.Get()) != 0);
    const DWORD code = GetLastError();
    file.Close();
    DeleteFileW(temporary.c_str());
    return good || Fail(error, "cannot write", code);
}

void RemoveTemporaries(const std::string& path, std::uint64_t process) {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        DeleteFileW(TemporaryName(path, process, attempt).c_str());
    }
}

} // namespace orvane::tools
