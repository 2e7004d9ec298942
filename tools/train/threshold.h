// Stage thresholds out of the sums of held faces.
#pragma once

#include <cstddef>
#include <vector>

namespace orvane::train {

/// The largest sum that at least `hitRate` of the faces reach. `sums` is not empty.
double LeastSumFor(std::vector<double> sums, double hitRate);

/// The largest sum that at least `hitRate` of all faces reach, and `hitRate - slack` of the faces of each source that
/// has enough of them to tell. `sources` names the source of each sum; `sums` is not empty.
double LeastSumForAll(const std::vector<double>& sums, const std::vector<std::size_t>& sources, double hitRate,
                      double slack);

/// The share of sums[from .. to - 1] that are at least `least`; 0 of none.
double ShareAtLeast(const std::vector<double>& sums, std::size_t from, std::size_t to, double least);

/// The file's threshold for a least sum: the largest for which `sum` itself still passes after the detector
/// has taken its bias off, or one float below that.
float FileThreshold(double sum);

} // namespace orvane::train
