#include "tools/support/density.h"

#include "tools/support/byte_order.h"
#include "tools/support/exif_block.h"
#include "tools/support/jpeg_segments.h"
#include "tools/support/png_chunks.h"
#include "tools/support/tiff_block.h"

#include <algorithm>
#include <cmath>

namespace orvane::tools {
namespace {

constexpr double kCentimetresAnInch = 2.54;
constexpr double kMetresAnInch = 0.0254;

const std::string kJfif("JFIF\0", 5);
// Places in a JFIF segment.
constexpr std::size_t kJfifUnit = 7;
constexpr std::size_t kJfifAcross = 8;
constexpr std::size_t kJfifDown = 10;
constexpr std::size_t kJfifBytes = 14;

// Places in a BMP file, whose numbers have their lowest byte first.
constexpr std::size_t kBmpHeaderSize = 14;
constexpr std::size_t kBmpAcross = 38;
constexpr std::size_t kBmpDown = 42;
constexpr std::size_t kBmpWithDensity = 46;

std::optional<Density> Told(double across, double down, double unitsAnInch) {
    if (!(across > 0) || !(down > 0)) return std::nullopt;
    return Density{across * unitsAnInch, down * unitsAnInch};
}

std::optional<Density> TiffDensity(const std::string& block) {
    constexpr unsigned kAcrossTag = 282;
    constexpr unsigned kDownTag = 283;
    constexpr unsigned kUnitTag = 296;
    constexpr unsigned kInch = 2;
    constexpr unsigned kCentimetre = 3;
    const TiffBlock tiff(block);
    const unsigned unit = tiff.Value(kUnitTag).value_or(kInch);
    if (unit != kInch && unit != kCentimetre) return std::nullopt;
    return Told(tiff.Fraction(kAcrossTag).value_or(0), tiff.Fraction(kDownTag).value_or(0),
                unit == kInch ? 1 : kCentimetresAnInch);
}

std::optional<Density> JpegDensity(const std::string& jpeg) {
    for (const JpegSegment& segment : JpegSegments(jpeg)) {
        if (!HasName(jpeg, segment, kJfifSegment, kJfif) || segment.size < kJfifBytes) continue;
        const std::uint32_t unit = HighFirst(jpeg, segment.content + kJfifUnit, 1);
        if (unit != 1 && unit != 2) break;
        return Told(HighFirst(jpeg, segment.content + kJfifAcross, 2), HighFirst(jpeg, segment.content + kJfifDown, 2),
                    unit == 1 ? 1 : kCentimetresAnInch);
    }
    return TiffDensity(ExifBlock(jpeg));
}

std::optional<Density> PngDensity(const std::string& png) {
    for (const PngChunk& chunk : PngChunks(png)) {
        if (chunk.type == "IDAT") break;
        if (chunk.type != "pHYs" || chunk.size != 9 || png[chunk.content + 8] != 1) continue;
        return Told(HighFirst(png, chunk.content, 4), HighFirst(png, chunk.content + 4, 4), kMetresAnInch);
    }
    return std::nullopt;
}

std::optional<Density> BmpDensity(const std::string& bmp) {
    if (bmp.size() < kBmpWithDensity || LowFirst(bmp, kBmpHeaderSize, 4) < 40) return std::nullopt;
    return Told(LowFirst(bmp, kBmpAcross, 4), LowFirst(bmp, kBmpDown, 4), kMetresAnInch);
}

std::uint32_t PixelsAMetre(int32 dpi) { return static_cast<std::uint32_t>(std::lround(dpi / kMetresAnInch)); }

void SetJpegDensity(int32 dpi, std::string* jpeg) {
    const auto value = static_cast<std::uint32_t>(dpi);
    const std::string density = std::string(1, '\1') + HighFirst(value, 2) + HighFirst(value, 2);
    for (const JpegSegment& segment : JpegSegments(*jpeg)) {
        if (!HasName(*jpeg, segment, kJfifSegment, kJfif) || segment.size < kJfifBytes) continue;
        jpeg->replace(segment.content + kJfifUnit, density.size(), density);
        return;
    }
    const std::string version("\1\1", 2);
    AddJpegSegments(JpegSegmentBytes(kJfifSegment, kJfif + version + density + std::string(2, '\0')), jpeg);
}

void SetPngDensity(int32 dpi, std::string* png) {
    const std::string pixels = HighFirst(PixelsAMetre(dpi), 4);
    SetPngChunk("pHYs", pixels + pixels + '\1', png);
}

void SetBmpDensity(int32 dpi, std::string* bmp) {
    if (bmp->size() < kBmpWithDensity) return;
    std::string pixels = HighFirst(PixelsAMetre(dpi), 4);
    std::reverse(pixels.begin(), pixels.end());
    bmp->replace(kBmpAcross, 4, pixels).replace(kBmpDown, 4, pixels);
}

} // namespace

std::optional<Density> DensityOf(const std::string& content) {
    const std::optional<PictureFormat> format = FormatOfContent(content);
    if (format == PictureFormat::jpeg) return JpegDensity(content);
    if (format == PictureFormat::png) return PngDensity(content);
    if (format == PictureFormat::bmp) return BmpDensity(content);
    return format == PictureFormat::tiff ? TiffDensity(content) : std::nullopt;
}

void SetDensity(PictureFormat format, int32 dpi, std::string* file) {
    if (format == PictureFormat::jpeg) SetJpegDensity(dpi, file);
    if (format == PictureFormat::png) SetPngDensity(dpi, file);
    if (format == PictureFormat::bmp) SetBmpDensity(dpi, file);
}

} // namespace orvane::tools
