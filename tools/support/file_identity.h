// What a path leads to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace orvane::tools {

/// Equal for two paths exactly when they lead to the same file, through links too.
using FileIdentity = std::pair<std::uint64_t, std::uint64_t>;

/// The file that `path` leads to, or none.
std::optional<FileIdentity> IdentifyFile(const std::string& path);

/// Whether `path` leads to a folder.
bool IsFolder(const std::string& path);

/// Whether anything has this name, also a link that leads nowhere.
bool IsNameTaken(const std::string& path);

/// Where the file's own name begins in `path`, behind its folders.
std::size_t NameStart(const std::string& path);

/// Equal for two names exactly when a folder takes them for one, as far as the system's usual rules go.
std::string NameKey(const std::string& name);

} // namespace orvane::tools
