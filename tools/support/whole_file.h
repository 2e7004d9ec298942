// Output files that are there completely or not at all.
#pragma once

#include <cstdint>
#include <string>

namespace orvane::tools {

/// What is said of an existing file that is not to be replaced.
inline constexpr const char* kNameTaken = "exists already; --force replaces it";

/// Reads the regular file at `path` into `*content`. False gives `*error` one line without the path.
bool ReadWholeFile(const std::string& path, std::string* content, std::string* error);

/// Writes `content` to `path`: into a temporary file in the same folder, flushed to the disk and
/// then renamed, so that nobody ever sees half a file. An existing file is replaced only with
/// `force`, and whether it exists is decided by the same system call that puts the file in place.
/// Anything but a regular file at `path` is never replaced. False leaves no temporary file behind
/// and gives `*error` one line without the path.
bool WriteWholeFile(const std::string& path, const std::string& content, bool force, std::string* error);

/// Whether `WriteWholeFile` could write `path` now, tried with a temporary file in the same folder that goes
/// away again, and holds `trial` until then: to be asked before work that would be lost. False gives `*error` the line
/// of `WriteWholeFile`.
bool CanWriteWholeFile(const std::string& path, bool force, std::string* error, const std::string& trial = "");

/// Removes what a process that was ended in the middle of `WriteWholeFile` left beside `path`.
void RemoveTemporaries(const std::string& path, std::uint64_t process);

} // namespace orvane::tools
