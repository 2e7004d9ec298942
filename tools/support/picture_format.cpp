#include "tools/support/picture_format.h"

#include "tools/support/bmp_end.h"
#include "tools/support/jpeg_end.h"
#include "tools/support/picture.h"
#include "tools/support/png_end.h"

#include <cctype>

namespace orvane::tools {

std::optional<PictureFormat> FormatOfName(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos) return std::nullopt;
    std::string extension = path.substr(dot + 1);
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (extension == "jpg" || extension == "jpeg") return PictureFormat::jpeg;
    if (extension == "png") return PictureFormat::png;
    if (extension == "bmp") return PictureFormat::bmp;
    if (extension == "tif" || extension == "tiff") return PictureFormat::tiff;
    return std::nullopt;
}

std::optional<PictureFormat> FormatOfContent(const std::string& content) {
    if (IsJpeg(content)) return PictureFormat::jpeg;
    if (IsPng(content)) return PictureFormat::png;
    if (IsBmp(content)) return PictureFormat::bmp;
    const std::string start = content.substr(0, 4);
    if (start == std::string("II*\0", 4) || start == std::string("MM\0*", 4)) return PictureFormat::tiff;
    return std::nullopt;
}

bool ReachesItsEnd(const std::string& content) {
    if (IsJpeg(content)) return JpegReachesItsEnd(content);
    if (IsPng(content)) return PngReachesItsEnd(content);
    return !IsBmp(content) || BmpReachesItsEnd(content);
}

std::string TooLargeText(int64 width, int64 height) {
    return std::to_string(width) + "x" + std::to_string(height) + " pixels are too many; at most " +
           std::to_string(kMaxPictureSide) + " a side and " + std::to_string(kMaxPicturePixels) + " in all";
}

} // namespace orvane::tools
