// A folder that is watched: each photograph that arrives in it becomes a portrait, until the program is asked to end.
#pragma once

#include "tools/orvane/options.h"
#include "tools/orvane/report.h"

namespace orvane::tools {

/// Does what `watch` is asked to. Good when it was asked to end, however many photographs failed.
ExitCode RunWatch(const Options& options);

} // namespace orvane::tools
