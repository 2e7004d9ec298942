// Arguments as one line, which is how a process gets them.
#pragma once

#include <string>
#include <vector>

namespace orvane::tools {

/// The line that a program's start-up code takes apart into `arguments` again.
std::string CommandLine(const std::vector<std::string>& arguments);

} // namespace orvane::tools
