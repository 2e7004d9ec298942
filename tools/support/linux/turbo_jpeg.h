// JPEG streams by TurboJPEG: what is written, and the four inks of a print house's picture.
#pragma once

#include "tools/support/picture_codec.h"

#include <string>
#include <vector>

namespace orvane::tools {

/// Encodes rows where they lie. False gives `*error` one line.
bool EncodeJpeg(const Picture& picture, const EncoderSettings& settings, std::string* encoded, std::string* error);

/// Cyan, magenta, yellow and black of each pixel, the top row first, 255 for no ink.
struct InkPicture {
    int32 width = 0;
    int32 height = 0;
    std::vector<uint8> inks;
};

/// Whether the stream has four inks.
bool HasInks(const std::string& jpeg);

/// False where the stream can't be decoded. The size is that of the stream's header, which the caller has checked.
bool DecodeInks(const std::string& jpeg, InkPicture* picture);

} // namespace orvane::tools
