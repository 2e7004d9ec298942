// Names of outputs out of a pattern, such as "{folder}/{stem}.png".
#pragma once

#include <cstddef>
#include <string>

namespace orvane::tools {

struct PatternValues {
    std::string stem;
    std::string folder;     ///< Folders separated by slashes; may be empty.
    std::size_t number = 0; ///< Written with six digits at least.
};

/// Without a pattern of the user's.
inline constexpr const char* kPlainPattern = "{stem}.png";

/// Whether `pattern` can name files below a folder: known words in its braces, no way out of the folder, a name at its
/// end. False gives `*error` one line that starts with "--output-name".
bool CheckPattern(const std::string& pattern, std::string* error);

/// The path below the output folder. Parts that come out empty are left out.
std::string NameByPattern(const std::string& pattern, const PatternValues& values);

} // namespace orvane::tools
