// Texts of the toolkit as the library's.
#pragma once

#include <string>

namespace orvane {

/// UTF-8 to wide characters; what is no UTF-8 becomes the replacement character.
std::wstring WideText(const char* utf8);

} // namespace orvane
