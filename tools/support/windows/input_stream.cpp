#include "tools/support/input_stream.h"

#include <algorithm>
#include <windows.h>

namespace orvane::tools {
namespace {

/// Up to `size` bytes; 0 at the end.
std::size_t ReadSome(char* bytes, std::size_t size) {
    DWORD n = 0;
    const auto piece = static_cast<DWORD>(std::min<std::size_t>(size, 1U << 20));
    return ReadFile(GetStdHandle(STD_INPUT_HANDLE), bytes, piece, &n, nullptr) != 0 ? n : 0;
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
