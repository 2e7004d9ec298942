// What can be told of a picture file without decoding it: its format by name or by content, and whether it
// is whole.
#pragma once

#include "primitives/types.h"

#include <optional>
#include <string>

namespace orvane::tools {

/// The formats that are written, and read on every system.
enum class PictureFormat { jpeg, png, bmp, tiff };

/// The format that the extension of `path` asks for: .jpg, .jpeg, .png, .bmp, .tif or .tiff, in capitals
/// or not.
std::optional<PictureFormat> FormatOfName(const std::string& path);

/// The format that a file's first bytes show.
std::optional<PictureFormat> FormatOfContent(const std::string& content);

/// Width and height as the file's header tells them; none where it breaks off before.
struct HeaderSize {
    int64 width = 0;
    int64 height = 0;
};
std::optional<HeaderSize> SizeInHeader(const std::string& content);

/// False for a JPEG, PNG or BMP file that breaks off; of other formats only a decoder can tell.
bool ReachesItsEnd(const std::string& content);

/// What is said of such a file, of one that is damaged otherwise, and of one that shows no known format.
inline constexpr const char* kBreaksOff = "damaged picture: it breaks off before its end";
inline constexpr const char* kDamaged = "damaged picture";
inline constexpr const char* kUnknownFormat = "is not a picture of a known format";

/// What is said of a picture beyond the caps.
std::string TooLargeText(int64 width, int64 height);

} // namespace orvane::tools
