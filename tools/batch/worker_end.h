// The worker's end of the talk that tools/batch/worker_pool.h tells of, over standard input and output.
#pragma once

#include "tools/batch/packing.h"
#include "tools/batch/worker_pool.h"

#include <string>

namespace orvane::tools {

/// One a process. When the run goes away, with or without a word, this process has some seconds for what it is at and
/// ends then, wherever it stands.
class WorkerEnd {
public:
    WorkerEnd();
    WorkerEnd(const WorkerEnd&) = delete;
    WorkerEnd& operator=(const WorkerEnd&) = delete;

    /// Waits for the next frame, which must be of this kind. False when the run has gone, or says what it should not.
    bool Take(FrameKind kind, std::string* content);

    void Give(FrameKind kind, const std::string& content);
};

} // namespace orvane::tools
