// A portrait's file as it goes on paper: its pixels, and how large they are there.
#pragma once

#include "tools/print/lengths.h"
#include "tools/support/picture.h"

#include <optional>
#include <string>

namespace orvane::tools {

struct PrintedPortrait {
    std::string path;
    std::string content; ///< The file's bytes.
    Picture picture;
    PaperSize size;
    std::string warning; ///< One line, or empty.
};

/// Reads a portrait. Its size on paper is `size` where that is given, else the one that its pixels and its resolution
/// make. False gives `*error` one line without the path: it can't be read, tells no resolution, or has other
/// proportions than `size`.
bool ReadPortrait(const std::string& path, const std::optional<PaperSize>& size, PrintedPortrait* portrait,
                  std::string* error);

} // namespace orvane::tools
