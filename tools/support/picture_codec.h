// The seam between the picture files and the system's decoders and encoders. Each system defines these two
// functions once.
#pragma once

#include "tools/support/file_settings.h"
#include "tools/support/picture.h"
#include "tools/support/picture_format.h"

#include <optional>
#include <string>

namespace orvane::tools {

/// What an encoder is told.
struct EncoderSettings {
    int32 quality = kPlainQuality;   ///< Of JPEG.
    Chroma chroma = Chroma::quarter; ///< Of JPEG.
    std::optional<int32> dpi;        ///< Of TIFF; other formats get it by SetDensity.
};

/// Decodes the file at `path`, whose bytes are `content`, as ReadPicture tells; `*warning` receives one line where the
/// picture's colours can't be told. False gives `*error` one line. Throws std::bad_alloc.
bool DecodePicture(const std::string& path, const std::string& content, Picture* picture, std::string* warning,
                   std::string* error);

/// Encodes a picture that is within the caps. Its rows serve the encoder where they lie; those of JPEG stay as they
/// are, so that it can be encoded again, others are in the encoder's order afterwards. False gives `*error` one line.
/// Throws std::bad_alloc.
bool EncodePixels(PictureFormat format, Picture& picture, const EncoderSettings& settings, std::string* encoded,
                  std::string* error);

} // namespace orvane::tools
