// The segments of a JPEG stream that stand before its first scan. Reads nothing outside the stream, whatever they
// claim.
#pragma once

#include "tools/support/file_parts.h"

#include <cstddef>
#include <optional>
#include <string>

namespace orvane::tools {

struct JpegSegment {
    unsigned marker = 0;     ///< Without the 0xFF in front.
    std::size_t at = 0;      ///< Of that 0xFF.
    std::size_t content = 0; ///< Behind the length.
    std::size_t size = 0;    ///< Bytes of the content, all of them within the stream.

    std::size_t End() const { return content + size; }
};

inline constexpr unsigned kJfifSegment = 0xE0;
inline constexpr unsigned kExifSegment = 0xE1;
inline constexpr unsigned kProfileSegment = 0xE2;
inline constexpr unsigned kAdobeSegment = 0xEE;
inline constexpr unsigned kCommentSegment = 0xFE;

/// The most that a segment holds.
inline constexpr std::size_t kMostInJpegSegment = 65533;

/// In their order, up to the first one that is damaged or starts a scan. Bytes between them that belong to none are
/// passed over, as a decoder does: it takes the orientation that it finds behind them.
FileParts<JpegSegment> JpegSegments(const std::string& jpeg);

/// Whether a segment of this kind begins with `name`.
bool HasName(const std::string& jpeg, const JpegSegment& segment, unsigned marker, const std::string& name);

/// What a stream's frame tells of its picture.
struct JpegFrame {
    unsigned marker = 0; ///< 0xC0 and 0xC1 for one scan, 0xC2 for progressive coding.
    unsigned bits = 0;   ///< Of a sample.
    unsigned width = 0;
    unsigned height = 0;
    unsigned components = 0;
    unsigned sampling = 0; ///< Of the first component: 16 times the factor across plus the one down.
};
std::optional<JpegFrame> FrameOf(const std::string& jpeg);

/// A segment in bytes. `content` is no larger than one takes.
std::string JpegSegmentBytes(unsigned marker, const std::string& content);

/// Puts whole segments behind those that tell what the stream is.
void AddJpegSegments(const std::string& segments, std::string* jpeg);

} // namespace orvane::tools
