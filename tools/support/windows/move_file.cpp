#include "tools/support/move_file.h"

#include "tools/support/windows/system_call.h"
#include "tools/support/windows/wide_text.h"

#include <windows.h>

namespace orvane::tools {

MoveEnd MoveToFreeName(const std::string& from, const std::string& to, std::string* error) {
    if (MoveFileExW(Wide(from).c_str(), Wide(to).c_str(), MOVEFILE_COPY_ALLOWED) != 0) return MoveEnd::good;
    const DWORD code = GetLastError();
    if (code == ERROR_ALREADY_EXISTS || code == ERROR_FILE_EXISTS) return MoveEnd::taken;
    *error = "cannot be moved: " + SystemErrorText(code);
    const bool isPassing = code == ERROR_SHARING_VIOLATION || code == ERROR_DISK_FULL;
    return isPassing ? MoveEnd::notNow : MoveEnd::failed;
}

void RemoveFile(const std::string& path) { DeleteFileW(Wide(path).c_str()); }

} // namespace orvane::tools
