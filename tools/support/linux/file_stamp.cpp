#include "tools/support/file_stamp.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::tools {
namespace {

std::int64_t Nanoseconds(const timespec& time) { return std::int64_t{time.tv_sec} * 1000000000 + time.tv_nsec; }

} // namespace

std::optional<FileStamp> StampOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return FileStamp{{status.st_dev, status.st_ino},
                     static_cast<std::uint64_t>(status.st_size),
                     Nanoseconds(status.st_mtim),
                     Nanoseconds(status.st_ctim)};
}

Writers WritersOf(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) return Writers::unknown;
    // The system grants a lease to read exactly when nobody has the file open to write. Whoever opens it to write in
    // the moment that it is held waits for that long, and the system says so by a signal, for which one is taken that
    // does nothing.
    Writers writers = Writers::unknown;
    if (::fcntl(file, F_SETSIG, SIGURG) == 0) {
        if (::fcntl(file, F_SETLEASE, F_RDLCK) == 0) {
            ::fcntl(file, F_SETLEASE, F_UNLCK);
            writers = Writers::none;
        } else if (errno == EAGAIN) {
            writers = Writers::some;
        }
    }
    ::close(file);
    return writers;
}

} // namespace orvane::tools
