// Numbers out of bytes: with the highest first, as JPEG and PNG write them, or the lowest, as BMP does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace orvane::tools {

/// At most 4 bytes from `at` on, which the bytes must have.
inline std::uint32_t HighFirst(const std::string& bytes, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

inline std::uint32_t LowFirst(const std::string& bytes, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = count; i > 0; --i) value = value << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
    return value;
}

inline std::string HighFirst(std::uint32_t value, int count) {
    std::string bytes;
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

} // namespace orvane::tools
