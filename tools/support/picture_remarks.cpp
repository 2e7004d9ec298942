#include "tools/support/picture_remarks.h"

#include "tools/support/jpeg_scans.h"
#include "tools/support/png_end.h"

namespace orvane::tools {
namespace {

/// A PNG file tells its frames in a chunk before the pixels, a WebP file in a flag of its extended header.
bool IsAnimated(const std::string& content) {
    if (IsPng(content)) {
        const std::size_t pixels = content.find("IDAT");
        return pixels != std::string::npos && content.rfind("acTL", pixels) != std::string::npos;
    }
    constexpr unsigned char kAnimation = 2;
    return content.size() > 20 && content.compare(0, 4, "RIFF") == 0 && content.compare(8, 8, "WEBPVP8X") == 0 &&
           (static_cast<unsigned char>(content[20]) & kAnimation) != 0;
}

} // namespace

std::string PictureRemark(const std::string& content) {
    if (IsAnimated(content)) return "the picture moves; its first frame is taken";
    if (!JpegScansAreWhole(content)) return "damaged in the middle; what is missing was filled in";
    return "";
}

} // namespace orvane::tools
