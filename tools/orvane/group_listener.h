// Hears which groups the detector formed of its hits, while it runs.
#pragma once

#include "detect/scan_observer.h"
#include "tools/orvane/report.h"

#include <vector>

namespace orvane::tools {

/// Listens as long as it lives; the groups are those of the last pass.
class GroupListener : public ScanObserver {
public:
    GroupListener() { g_scanObserver = this; }
    ~GroupListener() override { g_scanObserver = nullptr; }
    GroupListener(const GroupListener&) = delete;
    GroupListener& operator=(const GroupListener&) = delete;

    /// The scan runs as it does without a listener.
    bool NeedsSteps() const override { return false; }
    void OnPass() override { groups_.clear(); }
    void OnHits(const CandidateList& hits) override;

    /// In the order in which they were opened.
    const std::vector<FaceGroup>& Groups() const { return groups_; }
    /// The faces that they were joined to, of which the last is the one that is taken.
    int32 Faces() const;

private:
    std::vector<FaceGroup> groups_;
};

} // namespace orvane::tools
