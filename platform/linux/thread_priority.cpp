#include "platform/thread_priority.h"

#include <sys/resource.h>
#include <unistd.h>

namespace orvane {

void SetThreadPriority(ThreadPriority priority) {
    // A niceness is a thread's own here; raising it above the usual takes a right that few programs have.
    const int niceness = priority == ThreadPriority::aboveNormal ? -5 : 5;
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), niceness);
}

} // namespace orvane
