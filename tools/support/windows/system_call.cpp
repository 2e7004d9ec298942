#include "tools/support/windows/system_call.h"

#include <windows.h>

namespace orvane::tools {

std::string SystemErrorText(unsigned long code) {
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
        return "No such file or directory";
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
        return "Permission denied";
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return "another program uses it";
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return "No space left on device";
    default:
        return "Windows error " + std::to_string(code);
    }
}

bool SystemHandle::IsOpen() const { return handle_ != INVALID_HANDLE_VALUE && handle_ != nullptr; }

void SystemHandle::Close() {
    if (IsOpen()) CloseHandle(handle_);
    handle_ = INVALID_HANDLE_VALUE;
}

} // namespace orvane::tools
