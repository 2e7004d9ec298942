// How far faces get through the detector's steps, as the detector itself tells while it runs.
#pragma once

#include "detect/scan_observer.h"
#include "tools/train/square.h"

#include <array>
#include <cstdio>
#include <string>
#include <vector>

namespace orvane::train {

/// Where a face that is not reported at its place was lost, in the order of the detector's steps. "Near" are
/// windows, means of groups and squares that lie at the annotated face by the mapping and the overlap that the
/// reported face is judged by.
enum class Loss {
    kScale,       // no scanned scale has a near window
    kPruning,     // no near window begins on an edge
    kStages,      // no near window passes all stages
    kMembers,     // near windows pass, but no group with one of them has the members that a group needs
    kGroupPlace,  // such a group is there, but its mean is not near: others pull it away
    kMergedPlace, // the second round pulls it away
    kChoice,      // a group stands there, but another was opened later
    kReport,      // the chosen group is near and the reported square not quite
};
inline constexpr std::size_t kLossCount = 8;

/// What became of one face in one pass.
struct PassTrace {
    int64 scanned = 0;         // near windows at all scales
    int64 pruned = 0;          // those that pruning left
    std::vector<int64> stages; // those that passed each stage
    bool hasMembers = false;
    bool hasGroup = false;
    bool hasMerged = false;
    bool isChosen = false;
    int groupsElsewhere = 0; // second-level groups that are not near

    /// The first step that failed; kReport when none did.
    Loss FirstLoss() const;
    /// The first stage that no near window passed.
    std::size_t LastStage() const;
    /// The loss in a word or two, with the stage.
    std::string LossName() const;
};

/// Follows one annotated face through the passes of a detection with the loaded classifier. Set as
/// g_scanObserver meanwhile.
class FaceTracer : public ScanObserver {
public:
    FaceTracer(const FaceSquare& truth, const SquareMapping& mapping, int32 pictureHeight)
        : truth_(truth), mapping_(mapping), pictureHeight_(pictureHeight) {}

    const std::vector<PassTrace>& Passes() const { return passes_; }

    void OnPass() override;
    void OnScale(float scale) override;
    void OnPruned(const ImageBuffer& mask, ImageSize positions) override;
    void OnStage(std::size_t stage, const ImageBuffer& mask) override;
    void OnHits(const CandidateList& hits) override;

private:
    bool IsNear(const Candidate& candidate) const;
    int64 CountNear(const ImageBuffer& mask) const;

    FaceSquare truth_;
    SquareMapping mapping_;
    int32 pictureHeight_;
    float scale_ = 0.0F;
    std::vector<ImagePoint> near_; // positions of near windows at the present scale
    std::vector<PassTrace> passes_;
};

/// Losses of many portraits by step, for the first pass, the finer pass of those that the first found nothing
/// in, and both together. The last sums up to the portraits that are not right.
class LossTable {
public:
    /// @param passes what a tracer saw of the portrait, one pass at least
    /// @param right  whether the face was reported at its place in the end
    void Add(const std::vector<PassTrace>& passes, bool right);

    int InTheEnd(Loss loss) const { return inTheEnd_[static_cast<std::size_t>(loss)]; }
    int Total() const;
    void Print(std::FILE* out, const char* title) const;

private:
    using Counts = std::array<int, kLossCount>;
    struct Pass {
        int portraits = 0;
        Counts lost{};
        std::vector<int> lostAtStage;
    };
    static void Lose(const PassTrace& trace, Pass& pass);
    void PrintWindows(std::FILE* out) const;

    Pass first_;
    Pass finer_;
    Counts inTheEnd_{};
    std::vector<PassTrace> traces_; // of first passes
};

} // namespace orvane::train
