// Whether a BMP file holds all the rows that its header promises. The decoder leaves missing rows
// as they are and says nothing.
#pragma once

#include <string>

namespace orvane::tools {

/// Whether `data` starts as a BMP file does.
bool IsBmp(const std::string& data);

/// True when the rows lie wholly inside `data`; the padding behind the last row may be missing. Of
/// compressed rows the header's own count of bytes is taken. False also for a header that breaks off.
bool BmpReachesItsEnd(const std::string& data);

} // namespace orvane::tools
