// Between the UTF-8 that the tools work with and the 16-bit text that the system wants. What is no text in
// one becomes the replacement character in the other.
#pragma once

#include <string>

namespace orvane::tools {

std::wstring Wide(const std::string& utf8);
std::string Utf8(const std::wstring& wide);

} // namespace orvane::tools
