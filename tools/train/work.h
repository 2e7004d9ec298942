// What a scan costs, counted in rectangles: nearly all of its time goes into summing them.
#pragma once

#include "detect/scan_observer.h"

#include <cstdio>
#include <vector>

namespace orvane::train {

/// Counts windows through the stages of the loaded classifier. Set as g_scanObserver meanwhile.
class WorkCounter : public ScanObserver {
public:
    void OnPruned(const ImageBuffer& mask, ImageSize positions) override;
    void OnStage(std::size_t stage, const ImageBuffer& mask) override;

    /// Rectangles for a window on an edge, on the average, when each stage is summed from its beginning.
    double RectsByStages() const;
    /// The same when a chained stage goes on from the sum of the one before, as the scan in one go does.
    double RectsInOneGo() const;

    void Print(std::FILE* out) const;

private:
    static int64 CountIn(const ImageBuffer& mask);

    int64 windows_ = 0;          // on edges
    int64 alive_ = 0;            // in the present scale, before the next stage
    std::vector<int64> reached_; // by stage
};

} // namespace orvane::train
