// How far a run is, as one line that is redrawn.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace orvane::tools {

struct RunCounts {
    std::size_t total = 0;
    std::size_t done = 0;     ///< Of all, finished in whatever way.
    std::size_t kept = 0;     ///< Of those done, without work.
    std::size_t failed = 0;   ///< Of those done, with an error.
    std::size_t faceless = 0; ///< Of those done, without a face.
};

/// "120 of 10000, 4.1 a second, 0:40:10 left, 3 failed", cut to the width.
std::string ProgressText(const RunCounts& counts, std::chrono::milliseconds elapsed, int width);

/// The line on the terminal that standard error is; nothing where it is none.
class ProgressLine {
public:
    explicit ProgressLine(bool wanted) : wanted_(wanted) {}
    ~ProgressLine() { Hide(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Draws it, some times a second at the most.
    void Show(const RunCounts& counts);
    /// Makes room for other lines.
    void Hide();

private:
    bool wanted_;
    bool shown_ = false;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point drawn_{};
};

} // namespace orvane::tools
