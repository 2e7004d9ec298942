// Which build of a library or program a test program tests.
#pragma once

#include <cstdlib>
#include <filesystem>

namespace orvane::test {

/// The file as it was built, or the one of its name in the folder that the environment's ORVANE_TESTED_FOLDER tells.
inline std::filesystem::path TestedFile(const std::filesystem::path& built) {
    const char* folder = std::getenv("ORVANE_TESTED_FOLDER");
    return folder == nullptr ? built : std::filesystem::path(folder) / built.filename();
}

} // namespace orvane::test
