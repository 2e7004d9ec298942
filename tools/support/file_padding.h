// A file that is smaller than somebody takes is filled up with what every decoder passes over.
#pragma once

#include "tools/support/picture_format.h"

#include <cstddef>
#include <string>

namespace orvane::tools {

/// Whether the format has a place for it.
constexpr bool CanBePadded(PictureFormat format) {
    return format == PictureFormat::jpeg || format == PictureFormat::png;
}

/// Brings a file that can be padded to at least `size` bytes with comments of spaces: to `size` exactly, or some bytes
/// more where a comment's own frame takes them.
void PadFile(PictureFormat format, std::size_t size, std::string* file);

} // namespace orvane::tools
