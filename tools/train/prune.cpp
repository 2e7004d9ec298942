// Early stages made stricter once the later ones are known.
#include "tools/train/prune.h"

#include "tools/train/parallel.h"
#include "tools/train/threshold.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace orvane::train {
namespace {

constexpr double kSourceTimes = 4.0; // the share that one source may lose above that of all

/// The windows of a face that every stage lets through so far, each with its sums of the early stages.
class Hits {
public:
    Hits() = default;
    Hits(const Evaluator& evaluator, const FaceWindows& face, std::size_t stages, std::size_t keep) {
        for (const Patch& window : face.windows) {
            if (!evaluator.Passes(window)) continue;
            std::vector<double>& sums = sums_.emplace_back();
            for (std::size_t s = 0; s < stages; ++s) sums.push_back(evaluator.StageSum(s, window));
        }
        needed_ = std::min(sums_.size(), keep);
    }

    bool Any() const { return !sums_.empty(); }

    /// The largest sum of a stage that enough windows reach; none, below all, for a face that has too few already.
    double Limit(std::size_t stage) const {
        if (sums_.size() < needed_) return -std::numeric_limits<double>::infinity();
        std::vector<double> sums(sums_.size());
        std::transform(sums_.begin(), sums_.end(), sums.begin(),
                       [&](const std::vector<double>& hit) { return hit[stage]; });
        std::sort(sums.begin(), sums.end(), std::greater<>());
        return sums[needed_ - 1];
    }

    void Keep(std::size_t stage, double least) {
        std::erase_if(sums_, [&](const std::vector<double>& hit) { return hit[stage] < least; });
    }

private:
    std::vector<std::vector<double>> sums_;
    std::size_t needed_ = 1;
};

} // namespace

Cascade Pruned(const Cascade& cascade, const std::vector<FaceWindows>& faces, const PruneOptions& options,
               int threads) {
    const std::size_t stages = std::min(cascade.stages.size(), static_cast<std::size_t>(options.stages));
    const Evaluator evaluator(cascade);
    std::vector<Hits> all(faces.size());
    ForEachIndex(faces.size(), threads, [&](std::size_t i) {
        all[i] = Hits(evaluator, faces[i], stages, static_cast<std::size_t>(options.keep));
    });
    std::vector<Hits> hits;
    std::vector<std::size_t> sources;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!all[i].Any()) continue; // the cascade does not know it, so nothing is lost
        hits.push_back(std::move(all[i]));
        sources.push_back(faces[i].source);
    }
    Cascade pruned = cascade;
    if (hits.empty()) return pruned;
    for (std::size_t s = 0; s < stages; ++s) {
        std::vector<double> limits(hits.size());
        std::transform(hits.begin(), hits.end(), limits.begin(), [&](const Hits& face) { return face.Limit(s); });
        const double least = LeastSumForAll(limits, sources, 1.0 - options.lose, kSourceTimes * options.lose);
        float& threshold = pruned.stages[s].threshold;
        threshold = std::max(threshold, FileThreshold(least));
        for (Hits& face : hits) face.Keep(s, threshold - kThresholdBias);
    }
    return pruned;
}

} // namespace orvane::train
