// How long the stages of the last session took, for tools that report it.
#pragma once

#include <chrono>

namespace orvane {

/// Milliseconds.
struct StageTimes {
    double scale = 0;  // making the work picture
    double detect = 0; // finding and placing the face
    double crop = 0;   // the confirmation run with the crop alone
    double output = 0; // the final run of all enabled slots
};

/// Of the session that ran last; a stage that did not run is 0.
extern StageTimes g_stageTimes;

/// Adds the time from its making to its end to a figure.
class StageClock {
public:
    explicit StageClock(double& milliseconds) : milliseconds_(milliseconds) {}
    ~StageClock() {
        milliseconds_ += std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_).count();
    }
    StageClock(const StageClock&) = delete;
    StageClock& operator=(const StageClock&) = delete;

private:
    double& milliseconds_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace orvane
