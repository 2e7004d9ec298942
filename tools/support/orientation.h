// The orientation that a camera noted in a picture file. Reads nothing outside the file's bytes, whatever they
// claim.
#pragma once

#include <string>

namespace orvane::tools {

/// EXIF orientation 1 to 8 of a JPEG file's first EXIF segment or of a TIFF file's first picture; 1, upright,
/// where it tells none and for every other format.
int NotedOrientation(const std::string& content);

} // namespace orvane::tools
