// How an action tells that a primitive refused to work.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// Writes a primitive's status to standard output.
void PrintAssertion(int32 status);

/// Does so unless it is 0.
inline void ReportStatus(int32 status) {
    if (status != kOk) PrintAssertion(status);
}

} // namespace orvane
