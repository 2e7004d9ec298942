#include "tools/support/png_end.h"

#include <cstddef>
#include <cstdint>

namespace orvane::tools {
namespace {

const std::string kSignature = "\x89PNG\r\n\x1A\n";
constexpr std::size_t kLengthAndType = 8;
constexpr std::size_t kChecksum = 4;

std::uint64_t LengthAt(const std::string& data, std::size_t at) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(data[at + i]);
    return value;
}

} // namespace

bool IsPng(const std::string& data) { return data.compare(0, kSignature.size(), kSignature) == 0; }

bool PngReachesItsEnd(const std::string& data) {
    if (!IsPng(data)) return false;
    std::size_t at = kSignature.size();
    while (data.size() - at >= kLengthAndType + kChecksum) {
        const std::uint64_t length = LengthAt(data, at);
        if (data.size() - at - kLengthAndType - kChecksum < length) return false;
        if (data.compare(at + 4, 4, "IEND") == 0) return true;
        at += kLengthAndType + static_cast<std::size_t>(length) + kChecksum;
    }
    return false;
}

} // namespace orvane::tools
