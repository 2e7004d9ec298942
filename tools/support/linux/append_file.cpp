#include "tools/support/append_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::tools {
namespace {

bool Fail(std::string* error, const char* what, int code) {
    *error = std::string(what) + ": " + std::strerror(code);
    return false;
}

} // namespace

bool AppendFile::Open(const std::string& path, Start start, std::string* error) {
    Close();
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0666);
    if (file < 0) return Fail(error, "cannot write", errno);
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        *error = "is not a regular file";
        return false;
    }
    // File systems that know no locks do without.
    if (start == Start::atEnd && ::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        ::close(file);
        *error = kInUse;
        return false;
    }
    if (start == Start::empty && ::ftruncate(file, 0) != 0) {
        const int code = errno;
        ::close(file);
        return Fail(error, "cannot write", code);
    }
    file_ = file;
    return true;
}

bool AppendFile::Append(const std::string& text, std::string* error) {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = ::write(static_cast<int>(file_), text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return Fail(error, "cannot write", errno);
        done += static_cast<std::size_t>(n);
    }
    return true;
}

bool AppendFile::Flush(std::string* error) {
    return ::fdatasync(static_cast<int>(file_)) == 0 || Fail(error, "cannot write", errno);
}

void AppendFile::Close() {
    if (IsOpen()) ::close(static_cast<int>(file_));
    file_ = kNone;
}

} // namespace orvane::tools
