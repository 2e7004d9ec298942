// The options that every program which makes portraits knows, their words, their defaults and their bounds.
// A value that is taken here is one that the library takes.
#pragma once

#include "primitives/types.h"

#include <optional>
#include <string>

namespace orvane::tools {

/// Flags of the pipeline slots that a portrait may go through.
struct Actions {
    bool crop = true;
    bool background = false;
    bool colour = false;
    bool rotation = false;
};

/// How a portrait is to be.
struct PortraitSettings {
    int32 width = 480;
    int32 height = 860;
    float cropRatio = 1.0F; ///< Leaves the hair whole, which the library's own 0.75 often does not.
    Actions actions;
};

/// Bounds of the values, as the help texts tell them.
inline constexpr int32 kMinOutputSide = 75;
inline constexpr int32 kMaxOutputSide = 32767;
inline constexpr float kMaxCropRatio = 10.0F;

/// The whole of `text` as a number within the bounds; digits as in C, whatever the locale.
std::optional<int32> NumberWithin(const std::string& text, int32 least, int32 most);

/// The bounds in words.
std::string Range(int32 least, int32 most);

/// Read the value of --size, of --crop-ratio and of --actions. False gives `*error` one line, which starts
/// with the option's name, and leaves the settings as they were.
bool SetSize(const std::string& text, PortraitSettings* settings, std::string* error);
bool SetCropRatio(const std::string& text, PortraitSettings* settings, std::string* error);
bool SetActions(const std::string& text, PortraitSettings* settings, std::string* error);

/// Whether a cropped portrait has the size that was asked for, one side grown at the most. The library
/// drops the failure of a correction and gives what it had so far, which has another size or none.
bool HasAskedSize(int32 width, int32 height, const PortraitSettings& settings);

/// What is said of a portrait that has not.
inline constexpr const char* kCorrectionFailed = "a correction failed; a greater --crop-ratio may help";

} // namespace orvane::tools
