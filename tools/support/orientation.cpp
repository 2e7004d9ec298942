#include "tools/support/orientation.h"

#include "tools/support/exif_block.h"
#include "tools/support/picture_format.h"
#include "tools/support/tiff_block.h"

#include <cstdint>

namespace orvane::tools {
namespace {

constexpr int kUpright = 1;
constexpr unsigned kOrientationTag = 0x0112;

int OrientationIn(const std::string& block) {
    const std::uint32_t value = TiffBlock(block).Value(kOrientationTag).value_or(kUpright);
    return value >= 1 && value <= 8 ? static_cast<int>(value) : kUpright;
}

} // namespace

int NotedOrientation(const std::string& content) {
    const std::optional<PictureFormat> format = FormatOfContent(content);
    if (format == PictureFormat::tiff) return OrientationIn(content);
    if (format != PictureFormat::jpeg) return kUpright;
    return OrientationIn(ExifBlock(content));
}

} // namespace orvane::tools
