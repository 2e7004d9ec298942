#include "tools/support/child_process.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sched.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane::tools {
namespace {

/// What posix_spawn is to do between the fork and the program.
class SpawnActions {
public:
    SpawnActions() {
        good_ = ::posix_spawn_file_actions_init(&actions_) == 0 && ::posix_spawnattr_init(&attributes_) == 0;
    }
    ~SpawnActions() {
        ::posix_spawn_file_actions_destroy(&actions_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;

    int Spawn(pid_t* child, const std::vector<std::string>& command, int stream) {
        std::vector<char*> arguments;
        arguments.reserve(command.size() + 1);
        for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        if (!good_) return ENOMEM;
        int code = ::posix_spawn_file_actions_adddup2(&actions_, stream, STDIN_FILENO);
        if (code == 0) code = ::posix_spawn_file_actions_adddup2(&actions_, stream, STDOUT_FILENO);
        if (code == 0) code = ::posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        return code != 0 ? code
                         : ::posix_spawn(child, arguments[0], &actions_, &attributes_, arguments.data(), environ);
    }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
    bool good_ = false;
};

/// A descriptor beyond the standard streams, whose places are taken in the child before it is used.
int BeyondStandardStreams(int file) {
    if (file > STDERR_FILENO) return file;
    const int moved = ::fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::close(file);
    return moved;
}

std::string HowItEnded(int status) {
    if (WIFSIGNALED(status)) {
        return "signal " + std::to_string(WTERMSIG(status)) + ", " + ::strsignal(WTERMSIG(status));
    }
    return WEXITSTATUS(status) == 0 ? "" : "exit code " + std::to_string(WEXITSTATUS(status));
}

} // namespace

ChildProcess::~ChildProcess() {
    Kill();
    Wait();
}

bool ChildProcess::Start(const std::vector<std::string>& command, std::string* error) {
    Wait();
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        *error = std::string("cannot start: ") + std::strerror(errno);
        return false;
    }
    ends[0] = BeyondStandardStreams(ends[0]);
    ends[1] = BeyondStandardStreams(ends[1]);
    pid_t child = 0;
    const int code = SpawnActions().Spawn(&child, command, ends[1]);
    ::close(ends[1]);
    if (code != 0) {
        ::close(ends[0]);
        *error = std::string("cannot start: ") + std::strerror(code);
        return false;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    id_ = static_cast<std::uint64_t>(child);
    toChild_ = ends[0];
    return true;
}

bool ChildProcess::IsStarted() const { return id_ != 0; }

bool ChildProcess::IsAlive() const {
    siginfo_t about{};
    return id_ != 0 && ::waitid(P_PID, static_cast<id_t>(id_), &about, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           about.si_pid == 0;
}

std::uint64_t ChildProcess::Id() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return id_;
}

bool ChildProcess::Write(const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        // No signal for a reader that has gone.
        const ssize_t n = ::send(static_cast<int>(toChild_), bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

bool ChildProcess::Read(char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t n = ::read(static_cast<int>(toChild_), bytes, size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        bytes += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

void ChildProcess::Kill() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (id_ != 0) ::kill(static_cast<pid_t>(id_), SIGKILL);
}

std::string ChildProcess::Wait() {
    if (id_ == 0) return "";
    ::close(static_cast<int>(toChild_));
    toChild_ = -1;
    // It stays, dead, until its number is given back under the lock.
    siginfo_t about{};
    while (::waitid(P_PID, static_cast<id_t>(id_), &about, WEXITED | WNOWAIT) != 0 && errno == EINTR) continue;
    const std::lock_guard<std::mutex> lock(mutex_);
    int status = 0;
    while (::waitpid(static_cast<pid_t>(id_), &status, 0) < 0 && errno == EINTR) continue;
    id_ = 0;
    return HowItEnded(status);
}

bool LimitOwnMemory(std::uint64_t bytes) {
#if defined(__SANITIZE_ADDRESS__)
    static_cast<void>(bytes);
    return false; // the sanitizer's own tables count as data, and are larger than any limit
#else
    const rlimit limit{static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
    return ::setrlimit(RLIMIT_DATA, &limit) == 0;
#endif
}

int ProcessorCount() {
    cpu_set_t set;
    if (::sched_getaffinity(0, sizeof set, &set) == 0 && CPU_COUNT(&set) > 0) return CPU_COUNT(&set);
    const long online = ::sysconf(_SC_NPROCESSORS_ONLN);
    return online > 0 ? static_cast<int>(online) : 1;
}

void EndAtOnce(int exitCode) { ::_exit(exitCode); }

} // namespace orvane::tools
