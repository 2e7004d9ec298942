// Short numbers that stand for bytes: the same on every system and in every version, since shards and journals of
// earlier runs go by them. They tell accidents apart, not forgeries.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orvane::tools {

/// For names: FNV-1a of 64 bits, whose bits are then mixed so that the lowest depend on all bytes.
std::uint64_t NameFingerprint(const std::string& name);

/// For contents: byte i goes to the FNV-1a of lane i modulo 8, which the processor works side by side; the lanes and
/// the length are then joined by another one.
std::uint64_t ContentFingerprint(const std::string& content);

/// Sixteen hexadecimal digits, and back; none for any other text.
std::string FingerprintText(std::uint64_t fingerprint);
std::optional<std::uint64_t> FingerprintOf(const std::string& text);

} // namespace orvane::tools
