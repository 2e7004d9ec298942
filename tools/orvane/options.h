// The command line, read and checked: what is nonsense is refused here, before any photo is touched.
#pragma once

#include "primitives/types.h"

#include <string>
#include <vector>

namespace orvane::tools {

enum class Command { help, version, info, detect, portrait };

/// Flags of the pipeline slots that a portrait may go through.
struct Actions {
    bool crop = true;
    bool background = false;
    bool colour = false;
    bool rotation = false;
};

struct Options {
    Command command = Command::help;
    std::vector<std::string> photos; ///< Paths as bytes, in the order given.
    std::string output;
    std::string steps; ///< Folder for the picture after each action; empty for none.
    int32 width = 480;
    int32 height = 860;
    float cropRatio = 1.0F; ///< Leaves the hair whole, which the library's own 0.75 often does not.
    Actions actions;
    int32 tolerance = 40; ///< Percent, 0 to 99.
    int32 rotation = 0;   ///< Degrees clockwise, 0 to 359.
    bool json = false;
    bool force = false;
};

/// Bounds of the values, as the help text tells them.
inline constexpr int32 kMinOutputSide = 75;
inline constexpr int32 kMaxOutputSide = 32767;
inline constexpr float kMaxCropRatio = 10.0F;
inline constexpr int32 kMaxTolerance = 99;

/// Reads the arguments that follow the program's name. False gives `*error` one line.
bool ParseOptions(const std::vector<std::string>& arguments, Options* options, std::string* error);

} // namespace orvane::tools
