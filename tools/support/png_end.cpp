#include "tools/support/png_end.h"

#include "tools/support/byte_order.h"

#include <cstddef>

namespace orvane::tools {
namespace {

const std::string kSignature = "\x89PNG\r\n\x1A\n";
constexpr std::size_t kLengthAndType = 8;
constexpr std::size_t kChecksum = 4;

} // namespace

bool IsPng(const std::string& data) { return data.compare(0, kSignature.size(), kSignature) == 0; }

bool PngReachesItsEnd(const std::string& data) {
    if (!IsPng(data)) return false;
    std::size_t at = kSignature.size();
    while (data.size() - at >= kLengthAndType + kChecksum) {
        const std::size_t length = HighFirst(data, at, 4);
        if (data.size() - at - kLengthAndType - kChecksum < length) return false;
        if (data.compare(at + 4, 4, "IEND") == 0) return true;
        at += kLengthAndType + length + kChecksum;
    }
    return false;
}

} // namespace orvane::tools
