// ThreadSanitizer follows pthread_mutex_timedlock but not pthread_mutex_clocklock, which timed mutexes are made of;
// unseen locks would be reported as races. In programs under that sanitizer the one is made of the other.
#include <ctime>
#include <pthread.h>

namespace {

constexpr long kSecond = 1'000'000'000; // nanoseconds

timespec Now(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return now;
}

} // namespace

extern "C" int pthread_mutex_clocklock(pthread_mutex_t* mutex, clockid_t clock, const timespec* until) {
    const timespec here = Now(clock), there = Now(CLOCK_REALTIME);
    timespec end{there.tv_sec + until->tv_sec - here.tv_sec, there.tv_nsec + until->tv_nsec - here.tv_nsec};
    while (end.tv_nsec < 0) --end.tv_sec, end.tv_nsec += kSecond;
    while (end.tv_nsec >= kSecond) ++end.tv_sec, end.tv_nsec -= kSecond;
    return pthread_mutex_timedlock(mutex, &end);
}
