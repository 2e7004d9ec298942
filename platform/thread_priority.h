// How readily the system lets a thread run.
#pragma once

namespace orvane {

enum class ThreadPriority { aboveNormal, belowNormal };

/// Sets the calling thread's priority; where the system does not grant it, it stays.
void SetThreadPriority(ThreadPriority priority);

} // namespace orvane
