// The colours of a picture with a profile of its own become those of sRGB, the colours that a portrait has. The seam
// to the colour management of each system.
//
// Relative colorimetric with black point compensation: colours that both spaces have, those of skin among them, stay as
// they were measured, and shadows keep their shades.
#pragma once

#include "primitives/types.h"

#include <cstddef>
#include <string>

namespace orvane::tools {

/// Rows of 8-bit samples, three or four a pixel; a fourth one is transparency and stays as it is.
struct ColourRows {
    uint8* pixels = nullptr;
    int32 width = 0;
    int32 height = 0;
    std::ptrdiff_t pixel = 3;
    std::ptrdiff_t row = 0;
    bool redFirst = true;
};

/// Converts the rows where they lie. A profile that says what sRGB says leaves every pixel as it is. False, with the
/// rows as they were, for a profile that is damaged or not one of such a picture. Throws std::bad_alloc.
bool ConvertToSrgb(const std::string& profile, const ColourRows& rows);

/// What is said of a picture whose profile is such a one.
inline constexpr const char* kUnusableProfile = "its colour profile cannot be used; its colours were taken as sRGB";

/// Whether a JPEG, PNG or TIFF file says that it holds a profile.
bool NamesProfile(const std::string& content);

/// The profile of a JPEG stream, gathered from its segments; empty where one is missing.
std::string JpegProfile(const std::string& jpeg);

} // namespace orvane::tools
