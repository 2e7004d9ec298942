// The seam between the picture files and the system's decoders and encoders. Each system defines these two
// functions once.
#pragma once

#include "tools/support/picture.h"
#include "tools/support/picture_format.h"

#include <string>

namespace orvane::tools {

/// Decodes the file at `path`, whose bytes are `content`, as ReadPicture tells. False gives `*error` one line.
/// Throws std::bad_alloc.
bool DecodePicture(const std::string& path, const std::string& content, Picture* picture, std::string* error);

/// Encodes a picture that is within the caps. Its rows serve the encoder where they lie, and are in the encoder's order
/// afterwards. False gives `*error` one line. Throws std::bad_alloc.
bool EncodePixels(PictureFormat format, Picture& picture, std::string* encoded, std::string* error);

} // namespace orvane::tools
