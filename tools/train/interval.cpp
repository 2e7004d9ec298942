#include "tools/train/interval.h"

#include <algorithm>
#include <cmath>

namespace orvane::train {

Interval WilsonInterval(int part, int whole) {
    if (whole <= 0) return {};
    constexpr double kZ = 1.959963984540054; // 95 % of a normal distribution lie within so many deviations
    const double n = whole;
    const double share = part / n;
    const double shrink = 1.0 + kZ * kZ / n;
    const double middle = (share + kZ * kZ / (2.0 * n)) / shrink;
    const double half = kZ * std::sqrt(share * (1.0 - share) / n + kZ * kZ / (4.0 * n * n)) / shrink;
    return {100.0 * std::max(0.0, middle - half), 100.0 * std::min(1.0, middle + half)};
}

} // namespace orvane::train
