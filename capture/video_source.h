// The seam between live sessions and the system's cameras.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// Starts the capture device with this index. 0, or -30 when there is no such device or it can't be
/// started.
int32 OpenCapture(int32 deviceIndex);

} // namespace orvane
