// Processor time, so that a busy machine distorts no figure.
#pragma once

#include <ctime>

namespace orvane::bench {

/// Processor time of this thread, in seconds.
inline double ThreadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Seconds that one call takes of the processor.
template <typename Operation>
double SecondsOf(Operation&& operation) {
    const double start = ThreadSeconds();
    operation();
    return ThreadSeconds() - start;
}

} // namespace orvane::bench
