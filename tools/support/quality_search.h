// The quality at which a JPEG file has the size that is asked for, found with few encodings.
#pragma once

#include "primitives/types.h"

#include <cstdint>
#include <functional>
#include <string>

namespace orvane::tools {

/// Encodes at a quality, 1 to 100, of which a higher one gives no smaller file. False gives `*error` one line.
using EncodeAtQuality = std::function<bool(int32 quality, std::string* encoded, std::string* error)>;

struct SizeBounds {
    std::uint64_t least = 0;
    std::uint64_t most = UINT64_MAX;
};

/// What is said of a file that is too large even at its worst, or that can be no smaller.
std::string TooManyBytesText(std::uint64_t bytes, std::uint64_t most);

/// The file at the highest quality up to `wanted` that fits below the ceiling; where it is below the floor then, at the
/// lowest quality above `wanted` that reaches it, or, where none does within the ceiling, at the highest that fits:
/// that one may still be below the floor. False gives `*error` one line.
bool EncodeWithin(const SizeBounds& bounds, int32 wanted, const EncodeAtQuality& encode, std::string* encoded,
                  std::string* error);

} // namespace orvane::tools
