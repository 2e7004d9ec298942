// Whether a PNG file runs to its end. Not every decoder minds rows that are missing.
#pragma once

#include <string>

namespace orvane::tools {

/// Whether `data` starts as a PNG file does.
bool IsPng(const std::string& data);

/// Walks the chunks of a PNG file: true when the end chunk lies wholly inside `data`; what follows it is
/// ignored. Checksums and contents are the decoder's to check.
bool PngReachesItsEnd(const std::string& data);

} // namespace orvane::tools
