// What a scan tells of its steps while it runs, for those who judge a classifier. Without an observer, as in
// the library, nobody is told.
#pragma once

#include "detect/candidates.h"
#include "image/image_buffer.h"

#include <cstddef>

namespace orvane {

/// Told in this order: a pass begins; for each of its scales the scale, the pruned mask and the mask after each
/// stage, until no window is left; the hits of all scales. A pass that fails ends where it is. What an observer
/// leaves out it does not hear. The same windows survive a scan that tells its steps and one that does not, but the
/// latter takes them all at once.
class ScanObserver {
public:
    virtual ~ScanObserver() = default;

    /// False for one who wants no scale and no mask.
    virtual bool NeedsSteps() const { return true; }

    virtual void OnPass() {}
    /// @param scale pixels of the picture to a pixel of the scaled plane
    virtual void OnScale(float /*scale*/) {}
    /// @param mask      not 0 where the window that begins there, lowest row first, is alive
    /// @param positions the region of all window positions
    virtual void OnPruned(const ImageBuffer& /*mask*/, ImageSize /*positions*/) {}
    virtual void OnStage(std::size_t /*stage*/, const ImageBuffer& /*mask*/) {}
    /// The groups of the first round.
    virtual void OnHits(const CandidateList& /*hits*/) {}
};

/// Null, or who is told; must stay as long as it stands here.
extern ScanObserver* g_scanObserver;

} // namespace orvane
