#include "platform/thread_priority.h"

#include <windows.h>

namespace orvane {

void SetThreadPriority(ThreadPriority priority) {
    const bool above = priority == ThreadPriority::aboveNormal;
    ::SetThreadPriority(GetCurrentThread(), above ? THREAD_PRIORITY_ABOVE_NORMAL : THREAD_PRIORITY_BELOW_NORMAL);
}

} // namespace orvane
