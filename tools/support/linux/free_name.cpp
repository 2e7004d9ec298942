#include "tools/support/linux/free_name.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace orvane::tools {

bool RenameToFreeName(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // File systems without that call have hard links, which never replace either.
    return ::link(from.c_str(), to.c_str()) == 0 && ::unlink(from.c_str()) == 0;
}

} // namespace orvane::tools
