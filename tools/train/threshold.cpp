// Choosing thresholds.
#include "tools/train/threshold.h"

#include "tools/train/cascade.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace orvane::train {

double LeastSumFor(std::vector<double> sums, double hitRate) {
    std::sort(sums.begin(), sums.end());
    const auto lost = static_cast<std::size_t>((1.0 - hitRate) * static_cast<double>(sums.size()));
    return sums[std::min(lost, sums.size() - 1)];
}

double LeastSumForAll(const std::vector<double>& sums, const std::vector<std::size_t>& sources, double hitRate,
                      double slack) {
    constexpr std::size_t kEnough = 100;
    double least = LeastSumFor(sums, hitRate);
    std::map<std::size_t, std::vector<double>> bySource;
    for (std::size_t i = 0; i < sums.size(); ++i) bySource[sources[i]].push_back(sums[i]);
    for (const auto& [source, own] : bySource) {
        if (own.size() >= kEnough) least = std::min(least, LeastSumFor(own, hitRate - slack));
    }
    return least;
}

double ShareAtLeast(const std::vector<double>& sums, std::size_t from, std::size_t to, double least) {
    std::size_t kept = 0;
    for (std::size_t i = from; i < to; ++i) kept += sums[i] < least ? 0 : 1;
    return static_cast<double>(kept) / static_cast<double>(std::max<std::size_t>(to - from, 1));
}

float FileThreshold(double sum) {
    auto threshold = static_cast<float>(sum + static_cast<double>(kThresholdBias));
    while (sum < threshold - kThresholdBias) threshold = std::nextafter(threshold, -1e9f);
    return threshold;
}

} // namespace orvane::train
