// Picture files in and out. Reading turns whatever the file holds into 24-bit rows; writing encodes
// in memory first and then puts the whole file in place at once.
#pragma once

#include "tools/support/file_settings.h"
#include "tools/support/picture.h"

#include <string>

namespace orvane::tools {

/// Reads the photograph at `path`: JPEG, PNG, BMP and TIFF; on Linux also PNM, and WebP, HEIC and AVIF
/// where the system has loaders for them. The EXIF orientation is applied, transparency is laid over
/// white, everything becomes 8-bit colour. The size is taken from the header and refused above the caps
/// before anything is decoded; a file that breaks off is refused. Colours of a profile become those of sRGB. A path is
/// bytes of no assumed encoding on Linux and UTF-8 on Windows.
/// False leaves `*picture` empty and gives `*error` one line without the path.
bool ReadPicture(const std::string& path, Picture* picture, std::string* error);

/// What a picture file tells beside its pixels.
struct PictureNotes {
    std::string warning;  ///< One line where its colours can't be told; else empty.
    std::string metadata; ///< What of it may go along, as an EXIF block; empty for none.
};

/// The same with notes.
bool ReadPicture(const std::string& path, Picture* picture, PictureNotes* notes, std::string* error);

/// Whether `WritePicture` knows the extension of `path`: .jpg, .jpeg, .png, .bmp, .tif or .tiff, in
/// capitals or not.
bool IsWritablePictureName(const std::string& path);

/// What is said of a path whose extension it does not know.
inline constexpr const char* kUnwritableName =
    "has no extension of a format that can be written (.jpg, .png, .bmp, .tif)";

/// Encodes `picture` in the format that the extension of `path` names. False gives `*error` one line. A picture that is
/// given away is encoded where it lies; of one that is kept a copy is.
/// With `file` as it tells; what can't be met is an error.
bool EncodePicture(const std::string& path, const Picture& picture, std::string* encoded, std::string* error);
bool EncodePicture(const std::string& path, Picture&& picture, std::string* encoded, std::string* error);
bool EncodePicture(const std::string& path, Picture&& picture, const PortraitFile& file, std::string* encoded,
                   std::string* error);

/// Encodes `picture` and writes the file as `WriteWholeFile` does.
bool WritePicture(const std::string& path, const Picture& picture, bool force, std::string* error);
bool WritePicture(const std::string& path, Picture&& picture, bool force, std::string* error);
bool WritePicture(const std::string& path, Picture&& picture, const PortraitFile& file, bool force, std::string* error);

} // namespace orvane::tools
