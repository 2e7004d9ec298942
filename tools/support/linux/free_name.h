// A file's new name, which no other file has.
#pragma once

#include <string>

namespace orvane::tools {

/// Gives the file the name `to` on the same file system, unless that exists already, without a moment in between. False
/// leaves the reason in errno: EEXIST for a name that is taken.
bool RenameToFreeName(const std::string& from, const std::string& to);

} // namespace orvane::tools
