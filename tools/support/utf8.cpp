#include "tools/support/utf8.h"

namespace orvane::tools {
namespace {

bool IsHighHalf(char32_t character) { return character >= 0xD800 && character < 0xDC00; }
bool IsLowHalf(char32_t character) { return character >= 0xDC00 && character < 0xE000; }

void AppendUtf8(char32_t character, std::string* bytes) {
    if (character > 0x10FFFF || IsHighHalf(character) || IsLowHalf(character)) character = 0xFFFD;
    if (character < 0x80) {
        *bytes += static_cast<char>(character);
        return;
    }
    const int tails = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr unsigned kLeads[] = {0, 0xC0, 0xE0, 0xF0};
    *bytes += static_cast<char>(kLeads[tails] | (character >> (6 * tails)));
    for (int tail = tails - 1; tail >= 0; --tail) {
        *bytes += static_cast<char>(0x80 | ((character >> (6 * tail)) & 0x3F));
    }
}

} // namespace

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

std::string Utf8(const std::wstring& wide) {
    std::string bytes;
    for (std::size_t at = 0; at < wide.size(); ++at) {
        auto character = static_cast<char32_t>(wide[at]);
        if (IsHighHalf(character) && at + 1 < wide.size() && IsLowHalf(static_cast<char32_t>(wide[at + 1]))) {
            character = 0x10000 + ((character - 0xD800) << 10) + (static_cast<char32_t>(wide[++at]) - 0xDC00);
        }
        AppendUtf8(character, &bytes);
    }
    return bytes;
}

std::string WholeUtf8(const std::string& bytes) {
    std::string text;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = Utf8Length(bytes, at);
        text += length == 0 ? "\xEF\xBF\xBD" : bytes.substr(at, length);
        at += length == 0 ? 1 : length;
    }
    return text;
}

std::string OneLine(const std::string& bytes) {
    std::string line;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        const bool beyondAscii = byte == 0xC2 && Utf8Length(bytes, at) == 2 && // U+0080 to U+009F
                                 static_cast<unsigned char>(bytes[at + 1]) < 0xA0;
        line += byte < 0x20 || byte == 0x7F || beyondAscii ? '?' : bytes[at];
        if (beyondAscii) ++at;
    }
    return line;
}

} // namespace orvane::tools
