// A run over many photos: which ones, what each gives, what is told of it. Results are told in the photos' order,
// however many workers there are and whoever is done first.
#pragma once

#include "tools/orvane/options.h"
#include "tools/orvane/report.h"

namespace orvane::tools {

/// Does what `portrait` and `detect` are asked to. A single photo without a limit of time or memory is worked in this
/// process, all else in workers.
ExitCode RunOverPhotos(const Options& options);

} // namespace orvane::tools
