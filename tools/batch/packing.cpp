#include "tools/batch/packing.h"

#include <bit>

namespace orvane::tools {

Packer& Packer::Integer(std::int64_t value) {
    for (int shift = 0; shift < 64; shift += 8) {
        bytes_ += static_cast<char>(static_cast<std::uint64_t>(value) >> shift & 0xFF);
    }
    return *this;
}

Packer& Packer::Real(double value) { return Integer(std::bit_cast<std::int64_t>(value)); }

Packer& Packer::Text(const std::string& text) {
    Integer(static_cast<std::int64_t>(text.size()));
    bytes_ += text;
    return *this;
}

std::int64_t Unpacker::Integer() {
    if (bytes_.size() - at_ < 8) {
        good_ = false;
        at_ = bytes_.size();
        return 0;
    }
    std::uint64_t value = 0;
    for (int shift = 0; shift < 64; shift += 8) {
        value |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes_[at_++])) << shift;
    }
    return static_cast<std::int64_t>(value);
}

double Unpacker::Real() { return std::bit_cast<double>(Integer()); }

std::string Unpacker::Text() {
    const auto length = static_cast<std::uint64_t>(Integer());
    if (length > bytes_.size() - at_) {
        good_ = false;
        at_ = bytes_.size();
        return "";
    }
    std::string text = bytes_.substr(at_, static_cast<std::size_t>(length));
    at_ += text.size();
    return text;
}

std::string FrameBytes(const Frame& frame) {
    std::string bytes(1, frame.kind);
    const auto length = static_cast<std::uint32_t>(frame.content.size());
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(length >> shift & 0xFF);
    return bytes + frame.content;
}

std::optional<std::uint32_t> FrameLength(const char* start) {
    std::uint32_t length = 0;
    for (int i = 3; i >= 0; --i) length = length << 8 | static_cast<unsigned char>(start[i + 1]);
    if (length > kLongestFrame) return std::nullopt;
    return length;
}

} // namespace orvane::tools
