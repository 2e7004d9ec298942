#include "tools/support/colour_profile.h"

#include "tools/support/byte_order.h"
#include "tools/support/jpeg_segments.h"
#include "tools/support/picture_format.h"
#include "tools/support/png_chunks.h"
#include "tools/support/tiff_block.h"

#include <algorithm>

namespace orvane::tools {
namespace {

const std::string kName("ICC_PROFILE\0", 12);

} // namespace

bool NamesProfile(const std::string& content) {
    constexpr unsigned kProfileTag = 34675;
    const std::optional<PictureFormat> format = FormatOfContent(content);
    if (format == PictureFormat::jpeg) {
        return std::ranges::any_of(JpegSegments(content), [&](const JpegSegment& segment) {
            return HasName(content, segment, kProfileSegment, kName);
        });
    }
    if (format == PictureFormat::png) {
        return std::ranges::any_of(PngChunks(content), [](const PngChunk& chunk) { return chunk.type == "iCCP"; });
    }
    if (format != PictureFormat::tiff) return false;
    const TiffBlock tiff(content);
    const std::optional<std::size_t> list = tiff.FirstList();
    if (!list) return false;
    const std::vector<TiffBlock::Entry> entries = tiff.Entries(*list);
    return std::any_of(entries.begin(), entries.end(),
                       [](const TiffBlock::Entry& entry) { return entry.tag == kProfileTag; });
}

std::string JpegProfile(const std::string& jpeg) {
    const std::size_t head = kName.size() + 2; // behind the name a part's number, from 1, and how many there are
    std::vector<std::string> parts;
    for (const JpegSegment& segment : JpegSegments(jpeg)) {
        if (!HasName(jpeg, segment, kProfileSegment, kName) || segment.size < head) continue;
        const std::size_t number = HighFirst(jpeg, segment.content + kName.size(), 1);
        const std::size_t count = HighFirst(jpeg, segment.content + kName.size() + 1, 1);
        if (parts.empty()) parts.resize(count);
        if (number < 1 || number > parts.size() || count != parts.size()) return "";
        parts[number - 1] = jpeg.substr(segment.content + head, segment.size - head);
    }
    std::string profile;
    for (const std::string& part : parts) {
        if (part.empty()) return "";
        profile += part;
    }
    return profile;
}

} // namespace orvane::tools
