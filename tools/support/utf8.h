// File names are bytes; what is shown of them must be text on one line.
#pragma once

#include <cstddef>
#include <string>

namespace orvane::tools {

/// Bytes of the well-formed UTF-8 character that starts at `at`, 1 to 4; 0 when none does: stray or
/// missing continuation bytes, overlong forms, surrogates, values beyond U+10FFFF.
std::size_t Utf8Length(const std::string& bytes, std::size_t at);

/// `bytes` for a message line: control characters become '?', everything else stays as it is.
std::string OneLine(const std::string& bytes);

} // namespace orvane::tools
