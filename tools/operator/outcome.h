// How a command ends: the program's exit code, and the line on standard error that goes with it.
#pragma once

#include "primitives/types.h"

#include <string>

namespace orvane::tools {

/// What the program returns. Only with the first something was written to standard output.
enum OperatorExit : int { kOperatorDone = 0, kOperatorError = 1, kOperatorNoFace = 10, kOperatorCancelled = 20 };

/// What is said where standard output can't be written to.
inline constexpr const char* kNoStandardOutput = "cannot write to standard output";

/// A line on standard error, with the program's name in front.
void PrintOperatorError(const std::string& line);

/// The same, as the end of a command.
OperatorExit Fail(const std::string& line);

/// Ends with a result of a detect call that gives no portrait, told of `what` it was called for.
OperatorExit EndWithResult(const std::string& what, int32 result);

} // namespace orvane::tools
