#include "tools/support/utf8.h"

namespace orvane::tools {

std::size_t Utf8Length(const std::string& bytes, std::size_t at) {
    const auto byte = [&](std::size_t i) -> unsigned {
        return at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0;
    };
    const unsigned first = byte(0);
    if (first < 0x80) return 1;
    // The second byte's range rules out overlong forms, surrogates and values beyond the last plane.
    unsigned low = 0x80;
    unsigned high = 0xBF;
    std::size_t length = 0;
    if (first >= 0xC2 && first <= 0xDF) length = 2;
    if (first >= 0xE0 && first <= 0xEF) length = 3;
    if (first >= 0xF0 && first <= 0xF4) length = 4;
    if (first == 0xE0) low = 0xA0;
    if (first == 0xED) high = 0x9F;
    if (first == 0xF0) low = 0x90;
    if (first == 0xF4) high = 0x8F;
    if (length == 0 || byte(1) < low || byte(1) > high) return 0;
    for (std::size_t i = 2; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    }
    return length;
}

std::string OneLine(const std::string& bytes) {
    std::string line = bytes;
    for (char& c : line) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
    }
    return line;
}

} // namespace orvane::tools
