#include "tools/support/picture_io.h"

#include "tools/support/kept_metadata.h"
#include "tools/support/picture_codec.h"
#include "tools/support/portrait_encoder.h"
#include "tools/support/whole_file.h"

#include <new>
#include <utility>

namespace orvane::tools {
namespace {

constexpr const char* kNoMemory = "not enough memory";

} // namespace

bool ReadPicture(const std::string& path, Picture* picture, std::string* error) {
    PictureNotes ignored;
    return ReadPicture(path, picture, &ignored, error);
}

bool ReadPicture(const std::string& path, Picture* picture, PictureNotes* notes, std::string* error) try {
    *picture = Picture();
    *notes = PictureNotes();
    std::string content;
    if (!ReadWholeFile(path, &content, error)) return false;
    if (content.empty()) {
        *error = "is empty";
        return false;
    }
    if (!DecodePicture(path, content, picture, &notes->warning, error)) return false;
    notes->metadata = KeptMetadata(content);
    return true;
} catch (const std::bad_alloc&) {
    *error = kNoMemory;
    return false;
}

bool IsWritablePictureName(const std::string& path) { return FormatOfName(path).has_value(); }

bool EncodePicture(const std::string& path, const Picture& picture, std::string* encoded, std::string* error) try {
    return EncodePicture(path, Picture(picture), encoded, error);
} catch (const std::bad_alloc&) {
    *error = kNoMemory;
    return false;
}

bool EncodePicture(const std::string& path, Picture&& picture, std::string* encoded, std::string* error) {
    return EncodePicture(path, std::move(picture), PortraitFile(), encoded, error);
}

bool EncodePicture(const std::string& path, Picture&& picture, const PortraitFile& file, std::string* encoded,
                   std::string* error) try {
    const std::optional<PictureFormat> format = FormatOfName(path);
    if (!format) {
        *error = kUnwritableName;
        return false;
    }
    if (!IsPictureSizeAllowed(picture.width, picture.height)) {
        *error = "there is no picture to write";
        return false;
    }
    return EncodeFile(*format, picture, file, encoded, error);
} catch (const std::bad_alloc&) {
    *error = kNoMemory;
    return false;
}

bool WritePicture(const std::string& path, const Picture& picture, bool force, std::string* error) {
    std::string encoded;
    return EncodePicture(path, picture, &encoded, error) && WriteWholeFile(path, encoded, force, error);
}

bool WritePicture(const std::string& path, Picture&& picture, bool force, std::string* error) {
    return WritePicture(path, std::move(picture), PortraitFile(), force, error);
}

bool WritePicture(const std::string& path, Picture&& picture, const PortraitFile& file, bool force,
                  std::string* error) {
    std::string encoded;
    return EncodePicture(path, std::move(picture), file, &encoded, error) &&
           WriteWholeFile(path, encoded, force, error);
}

} // namespace orvane::tools
