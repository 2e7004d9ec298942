// The list of the cameras, with the numbers that live sessions take.
#pragma once

#include "capture/video_source.h"
#include "tools/operator/options.h"
#include "tools/operator/outcome.h"

namespace orvane::tools {

/// Runs `devices`: a line a camera on standard output, everything else on standard error. None is an error.
OperatorExit RunDevices(const OperatorOptions& options, VideoSystem& video);

} // namespace orvane::tools
