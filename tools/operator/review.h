// One photo through the library's window to a portrait file.
#pragma once

#include "tools/operator/options.h"
#include "tools/operator/outcome.h"

namespace orvane::tools {

/// Runs `review`: results on standard output, everything else on standard error.
OperatorExit RunReview(const OperatorOptions& options);

} // namespace orvane::tools
