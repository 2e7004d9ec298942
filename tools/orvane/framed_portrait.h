// A portrait of a size in millimetres: the part of the work picture that the frame needs goes through the actions, and
// the last cut makes it exactly as large as it is to be.
#pragma once

#include "session/pipeline.h"
#include "tools/orvane/options.h"
#include "tools/orvane/report.h"
#include "tools/support/picture.h"

namespace orvane::tools {

/// Makes the portrait of the session's photo, whose face was just found at `report->face`, as `options.frame` has it.
/// What a photograph lacks is noted in `report`, as a warning or, where there is no portrait then, as its error. 0; -50
/// without memory.
int32 MakeFramedPortrait(const Options& options, ImageSize photo, Picture* portrait, PhotoReport* report,
                         const SlotObserver& observer);

} // namespace orvane::tools
