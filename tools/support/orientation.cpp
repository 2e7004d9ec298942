#include "tools/support/orientation.h"

#include "tools/support/picture_format.h"
#include "tools/support/tiff_block.h"

#include <cstddef>
#include <cstdint>

namespace orvane::tools {
namespace {

constexpr int kUpright = 1;
constexpr unsigned kExifSegment = 0xE1;
constexpr unsigned kStartOfScan = 0xDA;
constexpr unsigned kOrientationTag = 0x0112;

int OrientationIn(const std::string& block) {
    const std::uint32_t value = TiffBlock(block).Value(kOrientationTag).value_or(kUpright);
    return value >= 1 && value <= 8 ? static_cast<int>(value) : kUpright;
}

/// The TIFF block of the EXIF segment, which stands before the first scan; else empty.
std::string ExifBlock(const std::string& jpeg) {
    static const std::string kName("Exif\0\0", 6);
    const auto byte = [&](std::size_t at) -> unsigned { return static_cast<unsigned char>(jpeg[at]); };
    std::size_t at = 2;
    while (at + 4 <= jpeg.size() && byte(at) == 0xFF) {
        const unsigned marker = byte(at + 1);
        if (marker == 0xFF) {
            ++at; // a fill byte
            continue;
        }
        const std::size_t length = byte(at + 2) << 8 | byte(at + 3);
        if (marker == kStartOfScan || length < 2) break;
        if (marker == kExifSegment && jpeg.compare(at + 4, kName.size(), kName) == 0 && length >= 2 + kName.size()) {
            return jpeg.substr(at + 4 + kName.size(), length - 2 - kName.size());
        }
        at += 2 + length;
    }
    return "";
}

} // namespace

int NotedOrientation(const std::string& content) {
    const std::optional<PictureFormat> format = FormatOfContent(content);
    if (format == PictureFormat::tiff) return OrientationIn(content);
    if (format != PictureFormat::jpeg) return kUpright;
    return OrientationIn(ExifBlock(content));
}

} // namespace orvane::tools
