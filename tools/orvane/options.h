// The command line, read and checked: what is nonsense is refused here, before any photo is touched.
#pragma once

#include "tools/support/portrait_options.h"

#include <string>
#include <vector>

namespace orvane::tools {

enum class Command { help, version, info, detect, portrait };

struct Options : PortraitSettings {
    Command command = Command::help;
    std::vector<std::string> photos; ///< Paths as bytes, in the order given.
    std::string output;
    std::string steps;    ///< Folder for the picture after each action; empty for none.
    int32 tolerance = 40; ///< Percent, 0 to 99.
    int32 rotation = 0;   ///< Degrees clockwise, 0 to 359.
    bool json = false;
    bool force = false;
};

/// Most of --tolerance, as the help text tells it.
inline constexpr int32 kMaxTolerance = 99;

/// Reads the arguments that follow the program's name. False gives `*error` one line.
bool ParseOptions(const std::vector<std::string>& arguments, Options* options, std::string* error);

} // namespace orvane::tools
