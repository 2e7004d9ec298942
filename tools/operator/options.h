// The operator's tool's command line, read and checked: what is nonsense is refused here, before the photo is
// touched or a camera opened.
#pragma once

#include "tools/support/portrait_options.h"

#include <string>
#include <vector>

namespace orvane::tools {

enum class OperatorCommand { help, review, live, devices };

struct OperatorOptions : PortraitSettings {
    OperatorCommand command = OperatorCommand::help;
    std::string photo;
    std::string output;
    std::string language; ///< Name of a file in the library's folder; empty for none.
    int32 device = 0;     ///< Index of the camera.
    bool hidden = false;
    bool force = false;
    bool json = false;
};

/// Reads the arguments that follow the program's name. False gives `*error` one line.
bool ParseOperatorOptions(const std::vector<std::string>& arguments, OperatorOptions* options, std::string* error);

} // namespace orvane::tools
