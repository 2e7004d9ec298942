#include "tools/support/jpeg_end.h"

namespace orvane::tools {
namespace {

unsigned ByteAt(const std::string& data, std::size_t at) { return static_cast<unsigned char>(data[at]); }

bool IsRestart(unsigned marker) { return marker >= 0xD0 && marker <= 0xD7; }

} // namespace

std::size_t NextJpegMarker(const std::string& data, std::size_t at) {
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

bool IsJpeg(const std::string& data) {
    return data.size() >= 3 && ByteAt(data, 0) == 0xFF && ByteAt(data, 1) == kJpegStart && ByteAt(data, 2) == 0xFF;
}

bool JpegReachesItsEnd(const std::string& data) {
    if (!IsJpeg(data)) return false;
    std::size_t at = NextJpegMarker(data, 2);
    while (at != std::string::npos) {
        const unsigned marker = ByteAt(data, at + 1);
        if (marker == kJpegEnd) return true;
        at += 2;
        if (marker != kJpegStart && marker != kJpegTemporary) {
            if (data.size() - at < 2) return false;
            const std::size_t length = ByteAt(data, at) << 8 | ByteAt(data, at + 1);
            if (length < 2 || data.size() - at < length) return false;
            at += length;
        }
        at = NextJpegMarker(data, at);
    }
    return false;
}

} // namespace orvane::tools
