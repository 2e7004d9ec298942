// What happens while a detection runs.
#pragma once

#include "detect/scan_observer.h"
#include "primitives/types.h"

#include <atomic>
#include <functional>
#include <utility>

namespace orvane::test {

/// While it lives, does something at the start of every pass of a detection, on the thread that detects.
class DuringDetection final : public ScanObserver {
public:
    explicit DuringDetection(std::function<void()> what) : what_(std::move(what)) { g_scanObserver = this; }
    ~DuringDetection() override { g_scanObserver = nullptr; }
    DuringDetection(const DuringDetection&) = delete;
    DuringDetection& operator=(const DuringDetection&) = delete;

    bool NeedsSteps() const override { return false; }
    void OnPass() override {
        ++passes;
        what_();
    }

    std::atomic<int32> passes = 0;

private:
    std::function<void()> what_;
};

} // namespace orvane::test
