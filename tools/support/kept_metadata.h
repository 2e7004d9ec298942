// What of a photograph's metadata may go along into its portrait: camera, dates and rights. The place where it was
// taken, the thumbnail, which shows more than the portrait, serial numbers and makers' notes never go along.
#pragma once

#include <string>

namespace orvane::tools {

/// The kept tags of a photograph's file as an EXIF block of its own, with upright orientation and the colours of sRGB;
/// empty where there are none.
std::string KeptMetadata(const std::string& content);

/// Puts such a block into a JPEG or PNG file.
void AddMetadata(const std::string& block, std::string* file);

} // namespace orvane::tools
