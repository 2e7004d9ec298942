// How an action tells that a primitive refused to work.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// Writes a primitive's status to standard output.
void PrintAssertion(int32 status);

} // namespace orvane
