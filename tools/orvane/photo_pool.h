// The workers of a run: how they are started, and what becomes of a photo by the way its job ended.
#pragma once

#include "tools/batch/worker_pool.h"
#include "tools/orvane/photo_job.h"

#include <cstdint>
#include <string>

namespace orvane::tools {

/// Workers for photos with these settings.
PoolSettings PoolOf(const WorkSettings& settings);

/// What a job came to, unless the run was stopped.
PhotoReport ReportOf(const JobOutcome& outcome, const std::string& photo, const WorkSettings& settings);

/// The fingerprint of all that this program's portraits depend on but their photos.
std::uint64_t FingerprintOfRun(const Options& options);

} // namespace orvane::tools
