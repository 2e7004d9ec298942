// The options that say what a portrait's file is to be like: their words and their bounds.
#pragma once

#include "tools/support/file_settings.h"

#include <string>

namespace orvane::tools {

/// The two readings of a kilobyte: whichever an authority has in mind, a file between a floor of the larger and a
/// ceiling of the smaller ones passes.
inline constexpr std::uint64_t kCeilingKilobyte = 1000;
inline constexpr std::uint64_t kFloorKilobyte = 1024;

/// Read the values of --quality, --chroma, --dpi, --max-kb and --min-kb. False gives `*error` one line, which starts
/// with the option's name.
bool SetQuality(const std::string& text, FileSettings* settings, std::string* error);
bool SetChroma(const std::string& text, FileSettings* settings, std::string* error);
bool SetDpi(const std::string& text, FileSettings* settings, std::string* error);
bool SetMostKilobytes(const std::string& text, FileSettings* settings, std::string* error);
bool SetLeastKilobytes(const std::string& text, FileSettings* settings, std::string* error);

/// What no single one tells: whether they go together, and with a file of the name `output`. A folder, whose name has
/// no extension, takes PNG files. False gives `*error` one line.
bool CheckFileSettings(const FileSettings& settings, const std::string& output, std::string* error);

} // namespace orvane::tools
