// Values as bytes, for the talk between a run and its workers: the same on both sides, since both are the same program.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orvane::tools {

class Packer {
public:
    Packer& Integer(std::int64_t value);
    Packer& Real(double value);
    Packer& Text(const std::string& text);
    Packer& Flag(bool value) { return Integer(value ? 1 : 0); }
    const std::string& Bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// Takes values in the order in which they were packed. Bytes that end too early give zeros and empty texts, and are
/// not good.
class Unpacker {
public:
    explicit Unpacker(const std::string& bytes) : bytes_(bytes) {}
    std::int64_t Integer();
    double Real();
    std::string Text();
    bool Flag() { return Integer() != 0; }
    /// Whether all values were there, and nothing else is.
    bool IsGood() const { return good_ && at_ == bytes_.size(); }

private:
    const std::string& bytes_;
    std::size_t at_ = 0;
    bool good_ = true;
};

/// One message of either side: its kind, and what it tells.
struct Frame {
    char kind = 0;
    std::string content;
};

/// A frame begins with its kind and the length of its content.
inline constexpr std::size_t kFrameStart = 5;
/// More than any message has; a length beyond it is none.
inline constexpr std::uint32_t kLongestFrame = 1U << 26;

std::string FrameBytes(const Frame& frame);
/// Takes the start of a frame apart; none where it is none.
std::optional<std::uint32_t> FrameLength(const char* start);

} // namespace orvane::tools
