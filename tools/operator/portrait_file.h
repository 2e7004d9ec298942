// The portrait from the library to its file, and the line that tells of it. Nothing is written unless the library
// has an output.
#pragma once

#include "tools/operator/options.h"
#include "tools/operator/outcome.h"
#include "tools/support/picture.h"

namespace orvane::tools {

/// Whether the output could be written now; to be asked first, since afterwards the operator's work would be lost.
/// False after a line on standard error.
bool CanWritePortrait(const OperatorOptions& options);

/// The library's output; `*portrait` stays empty without one, and when it is no picture.
/// @return the status of orv_GetOutputImage
int32 FetchPortrait(Picture* portrait);

/// Ends with the failure of FetchPortrait, told of `what` there was to be a portrait of.
OperatorExit FailWithoutPortrait(const std::string& what, int32 status);

/// Writes the portrait, and a line with its size and the library's result to standard output.
/// @param remark what else the line says
OperatorExit WritePortrait(const OperatorOptions& options, const Picture& portrait, int32 result,
                           const std::string& remark = "");

} // namespace orvane::tools
