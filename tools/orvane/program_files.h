// Files of the program's own folder.
#pragma once

#include <string>

namespace orvane::tools {

/// The program's own file; empty where the system does not tell.
std::string ProgramPath();

/// The classifier, which lies beside it.
std::string ClassifierPath();

} // namespace orvane::tools
