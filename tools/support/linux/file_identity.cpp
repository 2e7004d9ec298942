#include "tools/support/file_identity.h"

#include <sys/stat.h>

namespace orvane::tools {

std::optional<FileIdentity> IdentifyFile(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return FileIdentity(status.st_dev, status.st_ino);
}

bool IsFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsNameTaken(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

std::size_t NameStart(const std::string& path) { return path.rfind('/') + 1; } // 0 where there is none

std::string NameKey(const std::string& name) { return name; }

} // namespace orvane::tools
