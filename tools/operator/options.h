// The operator's tool's command line, read and checked: what is nonsense is refused here, before the photo is
// touched.
#pragma once

#include "tools/support/portrait_options.h"

#include <string>
#include <vector>

namespace orvane::tools {

enum class OperatorCommand { help, review };

struct OperatorOptions : PortraitSettings {
    OperatorCommand command = OperatorCommand::help;
    std::string photo;
    std::string output;
    std::string language; ///< Name of a file in the library's folder; empty for none.
    bool hidden = false;
    bool force = false;
};

/// Reads the arguments that follow the program's name. False gives `*error` one line.
bool ParseOperatorOptions(const std::vector<std::string>& arguments, OperatorOptions* options, std::string* error);

} // namespace orvane::tools
