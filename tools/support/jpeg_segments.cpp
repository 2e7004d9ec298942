#include "tools/support/jpeg_segments.h"

#include "tools/support/byte_order.h"
#include "tools/support/jpeg_end.h"

namespace orvane::tools {
namespace {

constexpr unsigned kStartOfScan = 0xDA;
constexpr std::size_t kMarkerAndLength = 4;

bool EndsSegments(unsigned marker) { return marker == kStartOfScan || marker == kJpegStart || marker == kJpegEnd; }

std::optional<JpegSegment> SegmentAt(const std::string& jpeg, std::size_t at) {
    if (at == 0) {
        if (!IsJpeg(jpeg)) return std::nullopt;
        at = 2;
    }
    for (;; at += 2) {
        at = NextJpegMarker(jpeg, at);
        if (at == std::string::npos || jpeg.size() - at < kMarkerAndLength) return std::nullopt;
        const unsigned marker = HighFirst(jpeg, at + 1, 1);
        if (marker == kJpegTemporary) continue;
        const std::size_t length = HighFirst(jpeg, at + 2, 2);
        if (EndsSegments(marker) || length < 2 || jpeg.size() - at - 2 < length) return std::nullopt;
        return JpegSegment{marker, at, at + kMarkerAndLength, length - 2};
    }
}

} // namespace

FileParts<JpegSegment> JpegSegments(const std::string& jpeg) { return {jpeg, SegmentAt}; }

bool HasName(const std::string& jpeg, const JpegSegment& segment, unsigned marker, const std::string& name) {
    return segment.marker == marker && segment.size >= name.size() &&
           jpeg.compare(segment.content, name.size(), name) == 0;
}

std::optional<JpegFrame> FrameOf(const std::string& jpeg) {
    constexpr std::size_t kFrameBytes = 9; // with one component
    for (const JpegSegment& segment : JpegSegments(jpeg)) {
        const unsigned marker = segment.marker;
        const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (!frame) continue;
        if (segment.size < kFrameBytes) break;
        const std::size_t at = segment.content;
        return JpegFrame{marker,
                         HighFirst(jpeg, at, 1),
                         HighFirst(jpeg, at + 3, 2),
                         HighFirst(jpeg, at + 1, 2),
                         HighFirst(jpeg, at + 5, 1),
                         HighFirst(jpeg, at + 7, 1)};
    }
    return std::nullopt;
}

std::string JpegSegmentBytes(unsigned marker, const std::string& content) {
    const auto length = static_cast<std::uint32_t>(content.size() + 2);
    return HighFirst(0xFF00 | marker, 2) + HighFirst(length, 2) + content;
}

void AddJpegSegments(const std::string& segments, std::string* jpeg) {
    std::size_t at = 2;
    for (const JpegSegment& segment : JpegSegments(*jpeg)) {
        if (segment.marker != kJfifSegment && segment.marker != kExifSegment) break;
        at = segment.End();
    }
    jpeg->insert(at, segments);
}

} // namespace orvane::tools
