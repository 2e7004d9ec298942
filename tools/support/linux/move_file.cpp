#include "tools/support/move_file.h"

#include "tools/support/linux/free_name.h"
#include "tools/support/whole_file.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace orvane::tools {
namespace {

/// To another file system: the old file goes when the new one is whole.
MoveEnd CopyAndRemove(const std::string& from, const std::string& to, std::string* error) {
    std::string content;
    if (!ReadWholeFile(from, &content, error)) return MoveEnd::failed;
    if (!WriteWholeFile(to, content, false, error)) return *error == kNameTaken ? MoveEnd::taken : MoveEnd::notNow;
    if (::unlink(from.c_str()) == 0) return MoveEnd::good;
    *error = std::string("cannot be removed: ") + std::strerror(errno);
    ::unlink(to.c_str());
    return MoveEnd::failed;
}

} // namespace

MoveEnd MoveToFreeName(const std::string& from, const std::string& to, std::string* error) {
    if (RenameToFreeName(from, to)) return MoveEnd::good;
    if (errno == EEXIST) return MoveEnd::taken;
    if (errno == EXDEV) return CopyAndRemove(from, to, error);
    const int code = errno;
    *error = std::string("cannot be moved: ") + std::strerror(code);
    return code == ENOSPC || code == EDQUOT ? MoveEnd::notNow : MoveEnd::failed;
}

void RemoveFile(const std::string& path) { ::unlink(path.c_str()); }

} // namespace orvane::tools
