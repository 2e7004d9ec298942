// Threads that never run and sleeps that take no time: what they would do, the target does, in the order that it
// chooses. For programs that link fuzz_threads.
#pragma once

namespace orvane::fuzz {

/// While it lives, the thread that made it starts no others, and where it sleeps, this is told. One at a time.
class PlayedThreads {
public:
    PlayedThreads();
    PlayedThreads(const PlayedThreads&) = delete;
    PlayedThreads& operator=(const PlayedThreads&) = delete;

    virtual void OnSleep() = 0;

protected:
    ~PlayedThreads();
};

} // namespace orvane::fuzz
