// What the system's component interfaces need of a thread before it may use them.
#pragma once

namespace orvane {

/// On Windows makes the calling thread a single-threaded apartment, or joins the one that it has, as long
/// as the object lives; it must go on the same thread. Elsewhere nothing.
class ThreadApartment {
public:
    ThreadApartment();
    ~ThreadApartment(); // NOLINT(performance-trivially-destructible): it has work to do on Windows
    ThreadApartment(const ThreadApartment&) = delete;
    ThreadApartment& operator=(const ThreadApartment&) = delete;

private:
    bool joined_ = false;
};

} // namespace orvane
