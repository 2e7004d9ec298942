#include "tools/support/result_stream.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace orvane::tools {
namespace {

int g_results = STDOUT_FILENO;

bool WriteAll(int file, const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = ::write(file, text.data() + done, text.size() - done);
        if (n < 0 && errno != EINTR) return false;
        if (n > 0) done += static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace

void ReserveResultStream() {
    const bool started = ::fcntl(STDOUT_FILENO, F_GETFD) >= 0;
    // A stream that the process was started without gets a place: else the next file that is opened
    // would take its number, and what is printed would land there.
    int file = 0;
    while (file >= 0 && file <= STDERR_FILENO) file = ::open("/dev/null", O_RDWR);
    if (file > STDERR_FILENO) ::close(file);
    g_results = started ? ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : -1;
    if (started) ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

bool WriteResult(const std::string& text) { return WriteAll(g_results, text); }

void WriteMessage(const std::string& text) { WriteAll(STDERR_FILENO, text); }

} // namespace orvane::tools
