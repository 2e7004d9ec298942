#include "tools/support/jpeg_end.h"

#include <cstddef>

namespace orvane::tools {
namespace {

constexpr unsigned kStartOfImage = 0xD8;
constexpr unsigned kEndOfImage = 0xD9;
constexpr unsigned kTemporary = 0x01;

unsigned ByteAt(const std::string& data, std::size_t at) { return static_cast<unsigned char>(data[at]); }

bool IsRestart(unsigned marker) { return marker >= 0xD0 && marker <= 0xD7; }

/// Position of the next marker's 0xFF, from `at` on, past coded data, stuffed zeros and restarts.
std::size_t NextMarker(const std::string& data, std::size_t at) {
    while ((at = data.find('\xFF', at)) != std::string::npos && at + 1 < data.size()) {
        const unsigned next = ByteAt(data, at + 1);
        if (next == 0xFF) {
            at += 1; // a fill byte: the marker may start with the next one
        } else if (next == 0 || IsRestart(next)) {
            at += 2;
        } else {
            return at;
        }
    }
    return std::string::npos;
}

} // namespace

bool IsJpeg(const std::string& data) {
    return data.size() >= 3 && ByteAt(data, 0) == 0xFF && ByteAt(data, 1) == kStartOfImage && ByteAt(data, 2) == 0xFF;
}

bool JpegReachesItsEnd(const std::string& data) {
    if (!IsJpeg(data)) return false;
    std::size_t at = NextMarker(data, 2);
    while (at != std::string::npos) {
        const unsigned marker = ByteAt(data, at + 1);
        if (marker == kEndOfImage) return true;
        at += 2;
        if (marker != kStartOfImage && marker != kTemporary) {
            if (data.size() - at < 2) return false;
            const std::size_t length = ByteAt(data, at) << 8 | ByteAt(data, at + 1);
            if (length < 2 || data.size() - at < length) return false;
            at += length;
        }
        at = NextMarker(data, at);
    }
    return false;
}

} // namespace orvane::tools
