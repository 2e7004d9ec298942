// Texts of others: file names are bytes, names of devices the system's wide characters. What is shown of them must
// be text on one line.
#pragma once

#include <cstddef>
#include <string>

namespace orvane::tools {

/// Bytes of the well-formed UTF-8 character that starts at `at`, 1 to 4; 0 when none does: stray or
/// missing continuation bytes, overlong forms, surrogates, values beyond U+10FFFF.
std::size_t Utf8Length(const std::string& bytes, std::size_t at);

/// The system's wide text, of 16 or 32 bits a character. Half pairs and values that are no character become the
/// replacement character.
std::string Utf8(const std::wstring& wide);

/// `bytes` as text: each that belongs to no well-formed character becomes U+FFFD.
std::string WholeUtf8(const std::string& bytes);

/// `bytes` for a message line: control characters become '?', everything else stays as it is. Those beyond ASCII,
/// which some terminals obey too, are told where they are well-formed UTF-8.
std::string OneLine(const std::string& bytes);

} // namespace orvane::tools
