// JPEG streams by TurboJPEG: what is written and what is read, the four inks of a print house's picture among it.
#pragma once

#include "tools/support/picture_codec.h"

#include <string>
#include <vector>

namespace orvane::tools {

/// Encodes rows where they lie. False gives `*error` one line.
bool EncodeJpeg(const Picture& picture, const EncoderSettings& settings, std::string* encoded, std::string* error);

/// Decodes a stream, as it lies there, to the rows of a Picture; inks as if they were pure. The picture has the size
/// that the stream's header tells, which the caller has checked. False gives `*error` one line. Throws std::bad_alloc.
bool DecodeJpeg(const std::string& jpeg, Picture* picture, std::string* error);

/// Cyan, magenta, yellow and black of each pixel, the top row first, 255 for no ink.
struct InkPicture {
    int32 width = 0;
    int32 height = 0;
    std::vector<uint8> inks;
};

/// Whether the stream has four inks.
bool HasInks(const std::string& jpeg);

/// The same of the inks alone.
bool DecodeInks(const std::string& jpeg, InkPicture* picture, std::string* error);

} // namespace orvane::tools
