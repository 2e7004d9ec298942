// The options that say which face is meant, what is told of it, and on which sheet portraits are laid out to be looked
// at.
#pragma once

#include "tools/support/face_box.h"

#include <optional>
#include <string>

namespace orvane::tools {

struct FaceSettings {
    std::optional<FaceBox> face; ///< Marked by hand, in pixels of the upright photo.
    std::string corrections;     ///< A file of such faces, one a photo; empty for none.
    bool allGroups = false;      ///< All groups of hits are told.
    std::string sheet;           ///< A contact sheet; empty for none.
};

/// Read the values of --face, --corrections and --sheet. False gives `*error` one line, which starts with the option's
/// name.
bool SetFace(const std::string& text, FaceSettings* settings, std::string* error);
bool SetCorrections(const std::string& text, FaceSettings* settings, std::string* error);
bool SetSheet(const std::string& text, FaceSettings* settings, std::string* error);

/// A rectangle whose sides are at least one pixel, out of texts; none for what is none.
std::optional<FaceBox> FaceBoxOf(const std::string& x, const std::string& y, const std::string& width,
                                 const std::string& height);

/// Whether a face lies in a photo of this size.
bool LiesWithin(const FaceBox& face, int32 width, int32 height);

} // namespace orvane::tools
