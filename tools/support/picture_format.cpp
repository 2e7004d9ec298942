#include "tools/support/picture_format.h"

#include "tools/support/bmp_end.h"
#include "tools/support/byte_order.h"
#include "tools/support/jpeg_end.h"
#include "tools/support/jpeg_segments.h"
#include "tools/support/picture.h"
#include "tools/support/png_end.h"
#include "tools/support/tiff_block.h"

#include <cctype>

namespace orvane::tools {
namespace {

constexpr unsigned kWidthTag = 256;
constexpr unsigned kHeightTag = 257;

std::optional<HeaderSize> JpegSize(const std::string& jpeg) {
    const std::optional<JpegFrame> frame = FrameOf(jpeg);
    if (!frame) return std::nullopt;
    return HeaderSize{frame->width, frame->height};
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
