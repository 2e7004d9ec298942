// The texts of `orvane-operator help` and of a call without arguments.
#pragma once

namespace orvane::tools {

extern const char* const kOperatorUsage;
extern const char* const kOperatorHelp;

} // namespace orvane::tools
