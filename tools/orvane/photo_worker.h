// The work on one photo after the other, in this process or in one that a run started for it.
#pragma once

#include "tools/orvane/host.h"
#include "tools/orvane/photo_job.h"

#include <functional>
#include <string>

namespace orvane::tools {

/// Asked with a journal's entry before a portrait takes its name; an answer that is not empty says why it must not.
using AskForPlace = std::function<std::string(const JournalEntry& entry)>;

/// Does what the job tells, and notes it in the report. A portrait that is there from an earlier run stays.
PhotoReport WorkOnPhoto(Host& host, const WorkSettings& settings, const PhotoJob& job, const AskForPlace& ask);

/// The program as a run starts it: settings and jobs come over standard input, reports go to standard output, as
/// tools/batch/worker_pool.h tells. Ends with its input.
ExitCode RunWorker();

} // namespace orvane::tools
