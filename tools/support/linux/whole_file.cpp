#include "tools/support/whole_file.h"

#include "tools/support/file_identity.h"
#include "tools/support/linux/free_name.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::tools {
namespace {

bool Fail(std::string* error, const char* what, int code) {
    *error = std::string(what) + ": " + std::strerror(code);
    return false;
}

bool WriteAll(int file, const std::string& content) {
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t n = ::write(file, content.data() + done, content.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

constexpr int kAttempts = 100;

/// A name beside `path` that no other process uses.
std::string TemporaryName(const std::string& path, std::uint64_t process, int attempt) {
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    return folder + ".orvane-" + std::to_string(process) + "-" + std::to_string(attempt) + ".tmp";
}

/// Creates a file of a free name beside `path`, with the permissions that a new file gets.
int CreateTemporary(const std::string& path, std::string* temporary) {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        *temporary = TemporaryName(path, static_cast<std::uint64_t>(::getpid()), attempt);
        const int file = ::open(temporary->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file >= 0 || errno != EEXIST) return file;
    }
    return -1;
}

bool IsNoRegularFile(const std::string& path, std::string* error) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode)) return false;
    *error = S_ISDIR(status.st_mode) ? "is a folder" : "is not a regular file";
    return true;
}

bool PutInPlace(const std::string& temporary, const std::string& path, bool force) {
    if (!force) return RenameToFreeName(temporary, path);
    return std::rename(temporary.c_str(), path.c_str()) == 0;
}

} // namespace

bool ReadWholeFile(const std::string& path, std::string* content, std::string* error) {
    content->clear();
    // Without O_NONBLOCK a pipe that nobody writes to would hold the program for ever.
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) return Fail(error, "cannot open", errno);
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        *error = S_ISDIR(status.st_mode) ? "is a folder" : "is not a regular file";
        return false;
    }
    content->reserve(static_cast<std::size_t>(status.st_size)); // it may grow meanwhile
    char block[65536];
    ssize_t n = 0;
    while ((n = ::read(file, block, sizeof block)) != 0) {
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) break;
        content->append(block, static_cast<std::size_t>(n));
    }
    const int code = errno;
    ::close(file);
    return n == 0 || Fail(error, "cannot read", code);
}

bool WriteWholeFile(const std::string& path, const std::string& content, bool force, std::string* error) {
    if (IsNoRegularFile(path, error)) return false;
    std::string temporary;
    const int file = CreateTemporary(path, &temporary);
    if (file < 0) return Fail(error, "cannot write", errno);

    bool good = WriteAll(file, content) && ::fsync(file) == 0;
    int code = errno;
    if (::close(file) != 0 && good) {
        good = false;
        code = errno;
    }
    if (good) {
        good = PutInPlace(temporary, path, force);
        code = errno;
    }
    if (good) return true;
    ::unlink(temporary.c_str());
    if (code == EEXIST && !force) {
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
    std::string temporary;
    const int file = CreateTemporary(path, &temporary);
    if (file < 0) return Fail(error, "cannot write", errno);
    const bool good = trial.empty() || (WriteAll(file, trial) && ::fsync(file) == 0);
    const int code = errno;
    ::close(file);
    ::unlink(temporary.c_str());
    return good || Fail(error, "cannot write", code);
}

void RemoveTemporaries(const std::string& path, std::uint64_t process) {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        ::unlink(TemporaryName(path, process, attempt).c_str());
    }
}

} // namespace orvane::tools
