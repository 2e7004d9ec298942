// A sum over bytes, to pin results that must be the same on every system and build.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orvane::test {

/// FNV-1a, 64 bits. Feed pieces one after the other by passing the sum so far.
inline std::uint64_t Checksum(const void* data, std::size_t bytes, std::uint64_t sum = 14695981039346656037u) {
    const auto* at = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i < bytes; ++i) sum = (sum ^ at[i]) * 1099511628211u;
    return sum;
}

} // namespace orvane::test
