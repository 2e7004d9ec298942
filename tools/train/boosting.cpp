// The search costs one table look-up a sample and feature. Sums over samples run in a fixed order, so that
// the chosen stumps never depend on the number of threads.
#include "tools/train/boosting.h"

#include "tools/train/parallel.h"

#include <algorithm>
#include <cmath>

namespace orvane::train {
namespace {

constexpr int kBins = 256;
constexpr std::size_t kRangeSamples = 600;
constexpr std::size_t kBlock = 64;
constexpr double kTrimmedShare = 0.01;

/// A feature value in units of the window's deviation; a flat window counts as far on its own side.
double Normalised(double value, float deviation) {
    if (deviation > 0.0f) return value / deviation;
    return value < 0.0 ? -1e6 : 1e6;
}

/// Whole steps, so small that nothing is lost by them and so large that sums of them are exact, in which the scan in
/// one go trusts.
float LeafValue(double value) { return static_cast<float>(std::round(std::ldexp(value, 24)) * 0x1.0p-24); }

struct Histogram {
    float weight[kBins];
};

/// Weight by bin. Two tables take turns, because neighbouring samples often share a bin and would wait for
/// one another's store.
void Fill(Histogram& out, const uint8* bins, const std::uint32_t* samples, const float* weights, std::size_t count) {
    Histogram second{};
    out = {};
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2) {
        out.weight[bins[samples[i]]] += weights[i];
        second.weight[bins[samples[i + 1]]] += weights[i + 1];
    }
    if (i < count) out.weight[bins[samples[i]]] += weights[i];
    for (int b = 0; b < kBins; ++b) out.weight[b] += second.weight[b];
}

} // namespace

QuantisedValues::QuantisedValues(const std::vector<Feature>& pool, const std::vector<Patch>& patches, float norm,
                                 int threads)
    : ranges_(pool.size()), bytes_(pool.size() * patches.size()), samples_(patches.size()) {
    const auto measure = [&](std::size_t f, std::size_t s) {
        return static_cast<float>(Normalised(patches[s].Measure(pool[f], norm), patches[s].Deviation()));
    };
    // A feature's range lies between the outer half per cents of some of its values: outliers share the end bins.
    std::vector<std::size_t> some;
    const std::size_t stride = std::max<std::size_t>(1, samples_ / kRangeSamples);
    for (std::size_t s = 0; s < samples_; s += stride) some.push_back(s);
    ForEachIndex(pool.size(), threads, [&](std::size_t f) {
        std::vector<float> values;
        values.reserve(some.size());
        for (const std::size_t s : some) values.push_back(measure(f, s));
        std::sort(values.begin(), values.end());
        const std::size_t tail = values.size() / 200;
        const float low = values.empty() ? 0.0f : values[tail];
        const float high = values.empty() ? 1.0f : values[values.size() - 1 - tail];
        ranges_[f] = {low, std::max((high - low) / kBins, 1e-6f)};
    });
    // Block by block of patches, all features on each: a block stays in the processor's cache.
    ForEachIndex((samples_ + kBlock - 1) / kBlock, threads, [&](std::size_t block) {
        const std::size_t end = std::min(samples_, (block + 1) * kBlock);
        for (std::size_t f = 0; f < pool.size(); ++f) {
            uint8* row = bytes_.data() + f * samples_;
            for (std::size_t s = block * kBlock; s < end; ++s) {
                row[s] =
                    static_cast<uint8>(std::clamp((measure(f, s) - ranges_[f].low) / ranges_[f].step, 0.0f, 255.0f));
            }
        }
    });
}

Booster::Booster(const std::vector<Feature>& pool, const QuantisedValues& values, std::size_t positives, int threads,
                 std::vector<double> scores)
    : pool_(pool), values_(values), positives_(positives), threads_(threads), scores_(std::move(scores)),
      weights_(values.Samples()) {
    if (scores_.empty()) {
        scores_.assign(values.Samples(), 0.0);
    } else {
        // exp(-label * (trust * score - offset)) with the offset that gives both classes the same weight: its
        // mean is the geometric mean of the classes' means.
        const auto loss = [&](double trust, double& offset) {
            double faces = 0.0;
            double others = 0.0;
            for (std::size_t s = 0; s < scores_.size(); ++s) {
                (s < positives_ ? faces : others) +=
                    std::exp(s < positives_ ? -trust * scores_[s] : trust * scores_[s]);
            }
            faces /= static_cast<double>(positives_);
            others /= static_cast<double>(scores_.size() - positives_);
            offset = 0.5 * std::log(others / faces);
            return faces * others;
        };
        double least = 1e300;
        double offset = 0.0;
        for (double trust = 0.02; trust < 1.5; trust *= 1.1) {
            double shift = 0.0;
            const double now = loss(trust, shift);
            if (now >= least) continue;
            least = now;
            trust_ = trust;
            offset = shift;
        }
        for (double& score : scores_) score = trust_ * score - offset;
    }
    Weigh();
}

void Booster::Weigh() {
    double total = 0.0;
    for (std::size_t s = 0; s < weights_.size(); ++s) {
        const bool face = s < positives_;
        weights_[s] = static_cast<float>(std::exp(face ? -scores_[s] : scores_[s]) /
                                         static_cast<double>(face ? positives_ : weights_.size() - positives_));
        total += weights_[s];
    }
    for (float& w : weights_) w = static_cast<float>(w / total);
}

void Booster::SelectHeavySamples() {
    std::vector<float> sorted = weights_;
    std::sort(sorted.begin(), sorted.end());
    double total = 0.0;
    for (const float w : sorted) total += w;
    double light = 0.0;
    float least = 0.0f;
    for (const float w : sorted) {
        light += w;
        if (light > kTrimmedShare * total) break;
        least = w;
    }
    heavy_.clear();
    heavyWeights_.clear();
    heavyPositives_ = 0;
    for (std::size_t s = 0; s < weights_.size(); ++s) {
        if (weights_[s] < least) continue;
        heavy_.push_back(static_cast<std::uint32_t>(s));
        heavyWeights_.push_back(weights_[s]);
        if (s < positives_) ++heavyPositives_;
    }
}

Booster::Split Booster::BestSplit(std::size_t feature) const {
    Histogram faces;
    Histogram others;
    const uint8* bins = values_.Row(feature);
    Fill(faces, bins, heavy_.data(), heavyWeights_.data(), heavyPositives_);
    Fill(others, bins, heavy_.data() + heavyPositives_, heavyWeights_.data() + heavyPositives_,
         heavy_.size() - heavyPositives_);
    double facesTotal = 0.0;
    double othersTotal = 0.0;
    for (int b = 0; b < kBins; ++b) {
        facesTotal += faces.weight[b];
        othersTotal += others.weight[b];
    }
    Split best;
    double faceSum = 0.0;
    double otherSum = 0.0;
    const double floor = 1e-4 * (facesTotal + othersTotal); // a side needs some weight to have a mean
    for (int b = 1; b < kBins; ++b) {
        faceSum += faces.weight[b - 1];
        otherSum += others.weight[b - 1];
        const double leftWeight = faceSum + otherSum;
        const double rightWeight = facesTotal + othersTotal - leftWeight;
        if (leftWeight < floor || rightWeight < floor) continue;
        const double left = faceSum - otherSum;
        const double right = (facesTotal - faceSum) - (othersTotal - otherSum);
        const double gain = left * left / leftWeight + right * right / rightWeight;
        if (gain > best.gain) {
            best = {gain, b, static_cast<float>(left / leftWeight), static_cast<float>(right / rightWeight)};
        }
    }
    return best;
}

Stump Booster::AddStump(const std::vector<std::uint32_t>& candidates) {
    SelectHeavySamples();
    std::vector<Split> splits(candidates.size());
    ForEachIndex(candidates.size(), threads_, [&](std::size_t i) { splits[i] = BestSplit(candidates[i]); });
    const auto better = [](const Split& a, const Split& b) { return a.gain < b.gain; };
    const auto best = std::max_element(splits.begin(), splits.end(), better); // the first of equals
    const std::size_t feature = candidates[static_cast<std::size_t>(best - splits.begin())];

    const uint8* bins = values_.Row(feature);
    for (std::size_t s = 0; s < weights_.size(); ++s) scores_[s] += bins[s] < best->bin ? best->below : best->above;
    Weigh();
    return {pool_[feature], values_.Edge(feature, best->bin), LeafValue(best->below / trust_),
            LeafValue(best->above / trust_)};
}

} // namespace orvane::train
