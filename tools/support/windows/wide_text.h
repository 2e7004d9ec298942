// From the UTF-8 that the tools work with to the 16-bit text that the system wants; tools/support/utf8.h goes the
// other way. What is no text becomes the replacement character.
#pragma once

#include <string>

namespace orvane::tools {

std::wstring Wide(const std::string& utf8);

} // namespace orvane::tools
