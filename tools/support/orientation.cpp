#include "tools/support/orientation.h"

#include "tools/support/picture_format.h"

#include <cstddef>
#include <cstdint>

namespace orvane::tools {
namespace {

constexpr int kUpright = 1;
constexpr unsigned kExifSegment = 0xE1;
constexpr unsigned kStartOfScan = 0xDA;
constexpr unsigned kOrientationTag = 0x0112;
constexpr unsigned kShortNumber = 3;
constexpr std::size_t kEntryBytes = 12;

/// A TIFF block: a byte order, and a list of tagged values. What lies outside it is zero.
class TiffBlock {
public:
    explicit TiffBlock(const std::string& bytes) : bytes_(bytes), highFirst_(bytes.compare(0, 2, "MM") == 0) {}

    int Orientation() const {
        if ((!highFirst_ && bytes_.compare(0, 2, "II") != 0) || Number(2, 2) != 42) return kUpright;
        const std::size_t list = Number(4, 4);
        const std::size_t count = Number(list, 2);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t entry = list + 2 + i * kEntryBytes;
            if (entry + kEntryBytes > bytes_.size()) break;
            if (Number(entry, 2) != kOrientationTag || Number(entry + 2, 2) != kShortNumber) continue;
            const std::uint32_t value = Number(entry + 8, 2);
            return value >= 1 && value <= 8 ? static_cast<int>(value) : kUpright;
        }
        return kUpright;
    }

private:
    std::uint32_t Number(std::size_t at, std::size_t count) const {
        if (at > bytes_.size() || bytes_.size() - at < count) return 0;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t place = highFirst_ ? at + i : at + count - 1 - i;
            value = value << 8 | static_cast<unsigned char>(bytes_[place]);
        }
        return value;
    }

    const std::string& bytes_;
    bool highFirst_;
};

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
    if (format == PictureFormat::tiff) return TiffBlock(content).Orientation();
    if (format != PictureFormat::jpeg) return kUpright;
    const std::string block = ExifBlock(content);
    return TiffBlock(block).Orientation();
}

} // namespace orvane::tools
