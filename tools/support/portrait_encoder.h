// A portrait's pixels become the bytes of its file, with all that was asked of it.
#pragma once

#include "tools/support/file_settings.h"
#include "tools/support/picture.h"
#include "tools/support/picture_format.h"

#include <string>

namespace orvane::tools {

/// Whether files of this format can be as the settings tell. False gives `*error` one line, with the option's name.
bool CanHaveSettings(PictureFormat format, const FileSettings& settings, std::string* error);

/// Encodes a picture that is within the caps; its rows are the encoder's afterwards. False gives `*error` one line.
/// Throws std::bad_alloc.
bool EncodeFile(PictureFormat format, Picture& picture, const PortraitFile& file, std::string* encoded,
                std::string* error);

} // namespace orvane::tools
