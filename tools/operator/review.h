// One photo through the library's window to a portrait file. Nothing is written unless the library has an
// output.
#pragma once

#include "tools/operator/options.h"

namespace orvane::tools {

/// What the program returns.
enum OperatorExit : int { kReviewWritten = 0, kReviewError = 1, kReviewNoFace = 10, kReviewCancelled = 20 };

/// Runs `review`: results on standard output, everything else on standard error.
OperatorExit RunReview(const OperatorOptions& options);

/// A line on standard error, with the program's name in front.
void PrintOperatorError(const std::string& line);

} // namespace orvane::tools
