// Gentle boosting of stumps over quantised feature values. A stump's two values are the weighted means of
// the labels on its two sides; weights follow exp(-label * score).
#pragma once

#include "tools/train/cascade.h"

#include <vector>

namespace orvane::train {

/// The feature pool measured on all samples of a stage: one byte for each feature and sample, in 256 even
/// steps over the range where that feature's values lie.
class QuantisedValues {
public:
    /// Patches: `positives` first, then negatives; divided by their deviation.
    QuantisedValues(const std::vector<Feature>& pool, const std::vector<Patch>& patches, float norm, int threads);

    const uint8* Row(std::size_t feature) const { return bytes_.data() + feature * samples_; }
    std::size_t Features() const { return ranges_.size(); }
    std::size_t Samples() const { return samples_; }

    /// The feature value at which bin `bin` begins.
    float Edge(std::size_t feature, int bin) const {
        return ranges_[feature].low + ranges_[feature].step * static_cast<float>(bin);
    }

private:
    struct Range {
        float low;
        float step;
    };
    std::vector<Range> ranges_;
    std::vector<uint8> bytes_;
    std::size_t samples_;
};

/// Adds stumps one by one. Scores and weights of all samples move along.
class Booster {
public:
    /// Samples 0 .. positives - 1 are faces. Each class starts with half of the weight.
    /// @param scores what earlier stages say about each sample; empty: nothing. Their trust is weighed anew:
    ///               they are multiplied by what makes the weights' sum least.
    Booster(const std::vector<Feature>& pool, const QuantisedValues& values, std::size_t positives, int threads,
            std::vector<double> scores = {});

    /// The stump with the least weighted squared error among the pool's features named by `candidates`.
    /// Samples that together hold less than 1 % of the weight are left out of the search.
    /// Its values are in units of the earlier scores.
    Stump AddStump(const std::vector<std::uint32_t>& candidates);

private:
    struct Split {
        double gain = -1.0;
        int bin = 0;
        float below = 0.0f;
        float above = 0.0f;
    };
    void Weigh();
    void SelectHeavySamples();
    Split BestSplit(std::size_t feature) const;

    const std::vector<Feature>& pool_;
    const QuantisedValues& values_;
    std::size_t positives_;
    int threads_;
    std::vector<double> scores_;
    double trust_ = 1.0; // of the earlier scores
    std::vector<float> weights_;
    std::vector<std::uint32_t> heavy_; // faces first
    std::vector<float> heavyWeights_;
    std::size_t heavyPositives_ = 0;
};

} // namespace orvane::train
