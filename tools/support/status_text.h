// The library's result codes in words. Every code that an exported function returns has some.
#pragma once

#include "primitives/types.h"

#include <string>

namespace orvane::tools {

/// What a result of opening the session, of a detect function or of fetching the output means.
std::string StatusText(int32 status);

} // namespace orvane::tools
