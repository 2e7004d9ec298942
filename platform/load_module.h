// Opening a module that lies beside the library's own file. A module stays loaded until the process ends:
// toolkits can't be unloaded safely.
#pragma once

#include "platform/module_folder.h"

#include <string>

namespace orvane {

/// Loads a shared library from the library's folder and looks up one of its functions.
/// @param file the module's file name
/// @param problem why there is none, in one line
/// @return the function's address, or null
void* FindInModule(const PathString& file, const char* function, std::string& problem);

} // namespace orvane
