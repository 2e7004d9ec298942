// What the file of a portrait is to be like, beside its pixels.
#pragma once

#include "primitives/types.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane::tools {

/// How many samples of colour a JPEG file has for its samples of brightness.
enum class Chroma {
    quarter, ///< 4:2:0, half as many a row and half as many rows.
    half,    ///< 4:2:2, half as many a row.
    full     ///< 4:4:4
};

struct FileSettings {
    std::optional<int32> quality;            ///< Of JPEG, 1 to 100; none for 95.
    std::optional<Chroma> chroma;            ///< Of JPEG; none for 4:2:0.
    std::optional<int32> dpi;                ///< Pixels an inch that the file tells; none for what encoders write.
    std::optional<std::uint64_t> leastBytes; ///< No smaller than this.
    std::optional<std::uint64_t> mostBytes;  ///< No larger than this.
    bool keepMetadata = false;               ///< Camera, dates and rights of the photograph go along.
};

/// A portrait's file: its settings, and what goes along from the photograph.
struct PortraitFile {
    FileSettings settings;
    std::string metadata; ///< An EXIF block; empty for none.
};

/// Near to lossless.
inline constexpr int32 kPlainQuality = 95;

} // namespace orvane::tools
