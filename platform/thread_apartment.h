// What the system's component interfaces need of a thread before it may use them.
#pragma once

namespace orvane {

/// On Windows makes the calling thread a single-threaded apartment, or joins the one that it has, as long
/// as the object lives. One that goes on another thread leaves both threads as they are: an apartment can be undone
/// by its own thread alone, and ends with it. Elsewhere nothing.
class ThreadApartment {
public:
    ThreadApartment();
    ~ThreadApartment(); // NOLINT(performance-trivially-destructible): it has work to do on Windows
    ThreadApartment(const ThreadApartment&) = delete;
    ThreadApartment& operator=(const ThreadApartment&) = delete;

private:
    void* thread_ = nullptr; // a handle of the one whose apartment was joined; null: nobody's
};

} // namespace orvane
