#include "tools/support/exif_block.h"

#include "tools/support/jpeg_segments.h"
#include "tools/support/picture_format.h"
#include "tools/support/png_chunks.h"

namespace orvane::tools {

std::string ExifBlock(const std::string& content) {
    static const std::string kName("Exif\0\0", 6);
    const std::optional<PictureFormat> format = FormatOfContent(content);
    if (format == PictureFormat::tiff) return content;
    if (format == PictureFormat::jpeg) {
        for (const JpegSegment& segment : JpegSegments(content)) {
            if (!HasName(content, segment, kExifSegment, kName)) continue;
            return content.substr(segment.content + kName.size(), segment.size - kName.size());
        }
    }
    if (format == PictureFormat::png) {
        for (const PngChunk& chunk : PngChunks(content)) {
            if (chunk.type == "eXIf") return content.substr(chunk.content, chunk.size);
        }
    }
    return "";
}

} // namespace orvane::tools
