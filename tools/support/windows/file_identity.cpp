#include "tools/support/file_identity.h"

#include "tools/support/utf8.h"
#include "tools/support/windows/system_call.h"
#include "tools/support/windows/wide_text.h"

#include <windows.h>

namespace orvane::tools {

std::optional<FileIdentity> IdentifyFile(const std::string& path) {
    const SystemHandle file(CreateFileW(Wide(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                        nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION about{};
    if (!file.IsOpen() || GetFileInformationByHandle(file.Get(), &about) == 0) return std::nullopt;
    const std::uint64_t high = about.nFileIndexHigh;
    return FileIdentity(about.dwVolumeSerialNumber, high << 32 | about.nFileIndexLow);
}

bool IsFolder(const std::string& path) {
    const DWORD attributes = GetFileAttributesW(Wide(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsNameTaken(const std::string& path) { return GetFileAttributesW(Wide(path).c_str()) != INVALID_FILE_ATTRIBUTES; }

std::size_t NameStart(const std::string& path) { return path.find_last_of("/\\:") + 1; } // 0 where there is none

std::string NameKey(const std::string& name) {
    std::wstring wide = Wide(name);
    CharLowerBuffW(wide.data(), static_cast<DWORD>(wide.size()));
    return Utf8(wide.c_str());
}

} // namespace orvane::tools
