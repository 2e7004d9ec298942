// Files that change their place.
#pragma once

#include <string>

namespace orvane::tools {

enum class MoveEnd {
    good,
    taken,  ///< Something has the new name.
    notNow, ///< The disk is full, or a program has the file in use.
    failed
};

/// Gives the file at `from` the path `to`, on another disk too, and never in place of anything. A failure gives
/// `*error` one line without the paths, and the file is where it was.
MoveEnd MoveToFreeName(const std::string& from, const std::string& to, std::string* error);

/// Removes the file, where there is one.
void RemoveFile(const std::string& path);

} // namespace orvane::tools
