#include "tools/batch/progress.h"

#include "tools/support/result_stream.h"
#include "tools/support/terminal.h"

#include <cstdio>

namespace orvane::tools {
namespace {

constexpr std::chrono::milliseconds kBetweenDrawings{200};

std::string Time(double seconds) {
    const auto whole = static_cast<long long>(seconds);
    char text[64];
    std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
    return text;
}

/// `text` over all but the last column, with the cursor in the first one: blanks cover what is left of a longer line,
/// so that no terminal's own commands are needed.
std::string Redrawn(const std::string& text, int width) {
    std::string line = "\r";
    line += text;
    line.resize(static_cast<std::size_t>(width), ' ');
    line += '\r';
    return line;
}

} // namespace

std::string ProgressText(const RunCounts& counts, std::chrono::milliseconds elapsed, int width) {
    std::string text = std::to_string(counts.done) + " of " + std::to_string(counts.total);
    // What was kept took next to no time and says nothing of what is to come.
    const auto worked = static_cast<double>(counts.done - counts.kept);
    const double seconds = static_cast<double>(elapsed.count()) / 1000;
    if (worked > 0 && seconds > 0) {
        char rate[400];
        std::snprintf(rate, sizeof rate, ", %.1f a second", worked / seconds);
        text += rate + (", " + Time(static_cast<double>(counts.total - counts.done) * seconds / worked)) + " left";
    }
    if (counts.faceless > 0) text += ", " + std::to_string(counts.faceless) + " without a face";
    text += ", " + std::to_string(counts.failed) + " failed";
    // A line that fills the last column would break on some terminals.
    return text.substr(0, static_cast<std::size_t>(width > 1 ? width - 1 : 0));
}

void ProgressLine::Show(const RunCounts& counts) {
    const auto now = std::chrono::steady_clock::now();
    if (!wanted_ || now - drawn_ < kBetweenDrawings) return;
    const int width = ErrorTerminalWidth();
    if (width == 0) return;
    drawn_ = now;
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(now - start_);
    const std::string text = ProgressText(counts, elapsed, width);
    WriteMessage(Redrawn(text, width));
    shown_ = true;
}

void ProgressLine::Hide() {
    if (!shown_) return;
    const int width = ErrorTerminalWidth();
    if (width > 0) WriteMessage(Redrawn("", width));
    shown_ = false;
    drawn_ = {};
}

} // namespace orvane::tools
