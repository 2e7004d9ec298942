// The EXIF block of a picture file.
#pragma once

#include <string>

namespace orvane::tools {

/// The TIFF block of a JPEG file's first EXIF segment or of a PNG file's EXIF chunk; a TIFF file itself; else empty.
std::string ExifBlock(const std::string& content);

} // namespace orvane::tools
