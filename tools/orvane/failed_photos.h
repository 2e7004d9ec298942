// Where a watched folder's photographs go that gave no portrait, each with a text beside it that says why.
#pragma once

#include <string>

namespace orvane::tools {

/// Of the folder of outputs.
inline constexpr const char* kFailedFolder = "failed";

enum class SetAsideEnd {
    good,
    unmovable, ///< The photograph stays where it is, for good; its text is written.
    later      ///< It may do later: the disk is full.
};

/// Moves the photograph at `path` below `output`, under a name that is free there; a longer one is cut. `*place`
/// becomes its new path, or with any other end one line on what is in the way.
SetAsideEnd SetAside(const std::string& path, const std::string& output, const std::string& reason, std::string* place);

} // namespace orvane::tools
