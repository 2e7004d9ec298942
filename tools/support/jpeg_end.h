// Whether a JPEG stream runs to its end. The decoder fills what is missing with grey and says
// nothing; half a face on an identity card must not pass.
#pragma once

#include <string>

namespace orvane::tools {

/// Whether `data` starts as a JPEG stream does.
bool IsJpeg(const std::string& data);

/// Walks the segments and scans of a JPEG stream: true when its end-of-image marker is reached.
/// Embedded thumbnails lie inside segments and do not count; what follows the end is ignored.
bool JpegReachesItsEnd(const std::string& data);

} // namespace orvane::tools
