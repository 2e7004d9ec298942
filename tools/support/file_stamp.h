// One state of a file that others write: what tells it from the next one, and whether it is the last.
#pragma once

#include "tools/support/file_identity.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane::tools {

/// Equal for two looks at a file between which nobody wrote to it.
struct FileStamp {
    FileIdentity file;
    std::uint64_t size = 0;
    std::int64_t written = 0; ///< Times in the system's own units.
    std::int64_t changed = 0;

    bool operator==(const FileStamp&) const = default;
};

/// Of the regular file that `path` leads to; none where it leads to no such file.
std::optional<FileStamp> StampOf(const std::string& path);

enum class Writers { none, some, unknown };

/// Whether any program has the file open to write to it. Unknown where the system does not tell: some file systems
/// don't, and files of other owners.
Writers WritersOf(const std::string& path);

} // namespace orvane::tools
