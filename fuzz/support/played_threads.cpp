#include "fuzz/support/played_threads.h"

#include <ctime>
#include <memory>
#include <thread>
#include <utility>

#define START_THREAD(prefix)                                                                                           \
    prefix##_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE

using State = std::unique_ptr<std::thread::_State>;

namespace {

thread_local orvane::fuzz::PlayedThreads* t_played = nullptr; // the fuzzer has threads of its own

} // namespace

// The linker leads what starts a thread and what sleeps here. A thread that was not started can't be joined either.
extern "C" {
void START_THREAD(__real_)(std::thread* self, State state, void (*depend)());
void START_THREAD(__wrap_)(std::thread* self, State state, void (*depend)());
void START_THREAD(__wrap_)(std::thread* self, State state, void (*depend)()) {
    if (t_played == nullptr) START_THREAD(__real_)(self, std::move(state), depend);
}

int __real_nanosleep(const timespec* time, timespec* left);
int __wrap_nanosleep(const timespec* time, timespec* left);
int __wrap_nanosleep(const timespec* time, timespec* left) {
    if (t_played == nullptr) return __real_nanosleep(time, left);
    t_played->OnSleep();
    return 0;
}
}

namespace orvane::fuzz {

PlayedThreads::PlayedThreads() { t_played = this; }
PlayedThreads::~PlayedThreads() { t_played = nullptr; }

} // namespace orvane::fuzz
