#include "tools/support/windows/wide_text.h"

#include <windows.h>

namespace orvane::tools {

std::wstring Wide(const std::string& utf8) {
    const int bytes = static_cast<int>(utf8.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), length);
    return wide;
}

} // namespace orvane::tools
