// The hits of a scan as a text, and whether it was scanned in one go or step by step.
#pragma once

#include "detect/scan_observer.h"

#include <string>

namespace orvane::test {

/// Keeps the hits of all passes while it lives.
class HitWatcher : public ScanObserver {
public:
    explicit HitWatcher(bool needsSteps) : needsSteps_(needsSteps), before_(g_scanObserver) { g_scanObserver = this; }
    ~HitWatcher() override { g_scanObserver = before_; }

    bool NeedsSteps() const override { return needsSteps_; }
    void OnScale(float) override { ++steps; }
    void OnHits(const CandidateList& hits) override {
        for (const CandidateGroup& group : hits.groups) {
            for (const Candidate& hit : group.members) {
                text += std::to_string(hit.x) + "," + std::to_string(hit.y) + "," + std::to_string(hit.size) + " ";
                ++count;
            }
            text += "| ";
        }
    }

    int steps = 0; // scales that it was told
    long count = 0;
    std::string text;

private:
    bool needsSteps_;
    ScanObserver* before_;
};

} // namespace orvane::test
