#include "tools/support/fingerprint.h"

#include <array>
#include <charconv>

namespace orvane::tools {
namespace {

constexpr std::uint64_t kOffset = 0xCBF29CE484222325;
constexpr std::uint64_t kPrime = 0x100000001B3;

constexpr std::uint64_t Add(std::uint64_t hash, char byte) {
    return (hash ^ static_cast<unsigned char>(byte)) * kPrime;
}

constexpr std::uint64_t AddNumber(std::uint64_t hash, std::uint64_t number) {
    for (int shift = 0; shift < 64; shift += 8) hash = Add(hash, static_cast<char>(number >> shift & 0xFF));
    return hash;
}

} // namespace

std::uint64_t NameFingerprint(const std::string& name) {
    std::uint64_t hash = kOffset;
    for (const char byte : name) hash = Add(hash, byte);
    // The prime carries upwards alone: without this the lowest bit would be the parity of the bytes' lowest bits.
    hash ^= hash >> 32;
    hash *= 0x9E3779B97F4A7C15;
    return hash ^ hash >> 29;
}

std::uint64_t ContentFingerprint(const std::string& content) {
    constexpr std::size_t kLanes = 8;
    std::array<std::uint64_t, kLanes> lanes{};
    lanes.fill(kOffset);
    const std::size_t whole = content.size() / kLanes * kLanes;
    for (std::size_t at = 0; at < whole; at += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) lanes[lane] = Add(lanes[lane], content[at + lane]);
    }
    for (std::size_t at = whole; at < content.size(); ++at) lanes[at - whole] = Add(lanes[at - whole], content[at]);
    std::uint64_t hash = AddNumber(kOffset, content.size());
    for (const std::uint64_t lane : lanes) hash = AddNumber(hash, lane);
    return hash;
}

std::string FingerprintText(std::uint64_t fingerprint) {
    std::string text(16, '0');
    for (std::size_t i = 0; i < 16; ++i) text[15 - i] = "0123456789abcdef"[fingerprint >> (4 * i) & 15];
    return text;
}

std::optional<std::uint64_t> FingerprintOf(const std::string& text) {
    std::uint64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value, 16);
    if (text.size() != 16 || code != std::errc() || stop != end) return std::nullopt;
    return value;
}

} // namespace orvane::tools
