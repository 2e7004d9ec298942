// Read before everything else in builds for the thread sanitizer. That of GCC 12 does not see
// pthread_mutex_clocklock, so timed mutexes lock by the call that it sees.
#include <bits/c++config.h>
#undef _GLIBCXX_USE_PTHREAD_MUTEX_CLOCKLOCK
