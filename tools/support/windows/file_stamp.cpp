#include "tools/support/file_stamp.h"

#include "tools/support/windows/system_call.h"
#include "tools/support/windows/wide_text.h"

#include <windows.h>

namespace orvane::tools {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::uint64_t Joined(DWORD high, DWORD low) { return static_cast<std::uint64_t>(high) << 32 | low; }

} // namespace

std::optional<FileStamp> StampOf(const std::string& path) {
    const SystemHandle file(CreateFileW(Wide(path).c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    BY_HANDLE_FILE_INFORMATION about{};
    if (!file.IsOpen() || GetFileType(file.Get()) != FILE_TYPE_DISK ||
        GetFileInformationByHandle(file.Get(), &about) == 0 ||
        (about.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return std::nullopt;
    }
    const FILETIME& written = about.ftLastWriteTime;
    return FileStamp{{about.dwVolumeSerialNumber, Joined(about.nFileIndexHigh, about.nFileIndexLow)},
                     Joined(about.nFileSizeHigh, about.nFileSizeLow),
                     static_cast<std::int64_t>(Joined(written.dwHighDateTime, written.dwLowDateTime)),
                     0};
}

Writers WritersOf(const std::string& path) {
    // Whoever reads it does not stand in the way, whoever writes to it does.
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_DELETE;
    const SystemHandle file(CreateFileW(Wide(path).c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
    if (file.IsOpen()) return Writers::none;
    return GetLastError() == ERROR_SHARING_VIOLATION ? Writers::some : Writers::unknown;
}

} // namespace orvane::tools
