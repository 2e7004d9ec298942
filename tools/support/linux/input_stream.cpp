#include "tools/support/input_stream.h"

#include <cerrno>
#include <unistd.h>

namespace orvane::tools {
namespace {

/// Up to `size` bytes; 0 at the end.
std::size_t ReadSome(char* bytes, std::size_t size) {
    for (;;) {
        const ssize_t n = ::read(STDIN_FILENO, bytes, size);
        if (n >= 0) return static_cast<std::size_t>(n);
        if (errno != EINTR) return 0;
    }
}

} // namespace

bool ReadInput(char* bytes, std::size_t size) {
    while (size > 0) {
        const std::size_t n = ReadSome(bytes, size);
        if (n == 0) return false;
        bytes += n;
        size -= n;
    }
    return true;
}

std::string ReadAllInput() {
    std::string content;
    char block[65536];
    while (const std::size_t n = ReadSome(block, sizeof block)) content.append(block, n);
    return content;
}

} // namespace orvane::tools
