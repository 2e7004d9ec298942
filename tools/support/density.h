// How many pixels of a picture an inch has on paper, as its file tells it.
#pragma once

#include "tools/support/picture_format.h"

#include <optional>
#include <string>

namespace orvane::tools {

/// Pixels an inch.
struct Density {
    double across = 0;
    double down = 0;
};

/// Bounds of `--dpi`.
inline constexpr int32 kLeastDpi = 36;
inline constexpr int32 kMostDpi = 2400;

inline constexpr double kMillimetresAnInch = 25.4;

/// What a JPEG, PNG, BMP or TIFF file tells; none where it tells nothing, or the proportions of a pixel alone.
std::optional<Density> DensityOf(const std::string& content);

/// Writes it into a JPEG, PNG or BMP file. A TIFF file is left as it is: its encoder writes it.
void SetDensity(PictureFormat format, int32 dpi, std::string* file);

} // namespace orvane::tools
