// Whether a JPEG stream runs to its end. The decoder fills what is missing with grey and says
// nothing; half a face on an identity card must not pass.
#pragma once

#include <cstddef>
#include <string>

namespace orvane::tools {

inline constexpr unsigned kJpegStart = 0xD8;     ///< Markers without a segment: of the stream's start,
inline constexpr unsigned kJpegEnd = 0xD9;       ///< of its end,
inline constexpr unsigned kJpegTemporary = 0x01; ///< and one that tells nothing.

/// Whether `data` starts as a JPEG stream does.
bool IsJpeg(const std::string& data);

/// Position of the next marker's 0xFF, from `at` on, past what is none, as a decoder finds it: coded data, stuffed
/// zeros, restarts, bytes between segments that belong to nothing. npos where there is none.
std::size_t NextJpegMarker(const std::string& data, std::size_t at);

/// Walks the segments and scans of a JPEG stream: true when its end-of-image marker is reached.
/// Embedded thumbnails lie inside segments and do not count; what follows the end is ignored.
bool JpegReachesItsEnd(const std::string& data);

} // namespace orvane::tools
