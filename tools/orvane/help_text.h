// The text of `orvane help`.
#pragma once

namespace orvane::tools {

extern const char* const kHelpText;

} // namespace orvane::tools
