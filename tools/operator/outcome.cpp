#include "tools/operator/outcome.h"

#include "orvane/orvane.h"
#include "tools/support/result_stream.h"
#include "tools/support/status_text.h"
#include "tools/support/utf8.h"

namespace orvane::tools {

void PrintOperatorError(const std::string& line) { WriteMessage("orvane-operator: " + OneLine(line) + "\n"); }

OperatorExit Fail(const std::string& line) {
    PrintOperatorError(line);
    return kOperatorError;
}

OperatorExit EndWithResult(const std::string& what, int32 result) {
    PrintOperatorError(what + ": " + StatusText(result));
    if (result == ORV_NO_FACE) return kOperatorNoFace;
    return result == ORV_CANCELLED ? kOperatorCancelled : kOperatorError;
}

} // namespace orvane::tools
