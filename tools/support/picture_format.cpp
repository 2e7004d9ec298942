#include "tools/support/picture_format.h"

#include "tools/support/bmp_end.h"
#include "tools/support/byte_order.h"
#include "tools/support/jpeg_end.h"
#include "tools/support/picture.h"
#include "tools/support/png_end.h"
#include "tools/support/tiff_block.h"

#include <cctype>

namespace orvane::tools {
namespace {

constexpr unsigned kWidthTag = 256;
constexpr unsigned kHeightTag = 257;

/// The frame segment's size: markers C0 to CF but for three that are no frames.
std::optional<HeaderSize> JpegSize(const std::string& jpeg) {
    std::size_t at = 2;
    while (jpeg.size() >= 9 && at <= jpeg.size() - 9 && HighFirst(jpeg, at, 1) == 0xFF) {
        const int64 marker = HighFirst(jpeg, at + 1, 1);
        if (marker == 0xFF) {
            ++at; // a fill byte
            continue;
        }
        const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (frame) return HeaderSize{HighFirst(jpeg, at + 7, 2), HighFirst(jpeg, at + 5, 2)};
        at += 2 + static_cast<std::size_t>(HighFirst(jpeg, at + 2, 2));
    }
    return std::nullopt;
}

std::optional<HeaderSize> BmpSize(const std::string& bmp) {
    if (bmp.size() < 26) return std::nullopt;
    if (LowFirst(bmp, 14, 4) == 12) return HeaderSize{LowFirst(bmp, 18, 2), LowFirst(bmp, 20, 2)};
    const int64 height{LowFirst(bmp, 22, 4)};
    return HeaderSize{LowFirst(bmp, 18, 4), height < 0x80000000 ? height : 0x100000000 - height};
}

std::optional<HeaderSize> TiffSize(const std::string& tiff) {
    const TiffBlock block(tiff);
    const std::optional<std::uint32_t> width = block.Value(kWidthTag);
    const std::optional<std::uint32_t> height = block.Value(kHeightTag);
    if (!width || !height) return std::nullopt;
    return HeaderSize{*width, *height};
}

} // namespace

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

std::optional<HeaderSize> SizeInHeader(const std::string& content) {
    if (IsJpeg(content)) return JpegSize(content);
    if (IsBmp(content)) return BmpSize(content);
    if (IsPng(content)) {
        if (content.size() < 24) return std::nullopt;
        return HeaderSize{HighFirst(content, 16, 4), HighFirst(content, 20, 4)};
    }
    return FormatOfContent(content) == PictureFormat::tiff ? TiffSize(content) : std::nullopt;
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
