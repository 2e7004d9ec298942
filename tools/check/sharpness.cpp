#include "tools/check/sharpness.h"

#include <algorithm>
#include <cstddef>

namespace orvane::tools {
namespace {

/// What an output pixel of one axis is made of.
struct Tap {
    int32 at;
    double weight;
};

std::vector<std::vector<Tap>> TapsOf(int32 from, int32 to) {
    std::vector<std::vector<Tap>> taps(static_cast<std::size_t>(to));
    const double ratio = static_cast<double>(from) / to;
    for (int32 i = 0; i < to; ++i) {
        std::vector<Tap>& own = taps[static_cast<std::size_t>(i)];
        if (from <= to) {
            const double place = std::clamp((i + 0.5) * ratio - 0.5, 0.0, from - 1.0);
            const auto first = static_cast<int32>(place);
            const double part = place - first;
            own.push_back({first, 1.0 - part});
            if (part > 0) own.push_back({first + 1, part});
            continue;
        }
        const double start = i * ratio;
        const double end = std::min<double>(start + ratio, from);
        for (auto at = static_cast<int32>(start); at < from && at < end; ++at) {
            own.push_back({at, (std::min(at + 1.0, end) - std::max<double>(at, start)) / (end - start)});
        }
    }
    return taps;
}

} // namespace

std::vector<double> Resampled(const Luminance& plane, int32 width, int32 height) {
    std::vector<double> result;
    if (plane.levels.empty()) return result;
    result.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const auto columns = TapsOf(plane.width, width);
    std::vector<double> mixed(static_cast<std::size_t>(plane.width));
    for (const std::vector<Tap>& rows : TapsOf(plane.height, height)) {
        std::fill(mixed.begin(), mixed.end(), 0.0);
        for (const Tap& row : rows) {
            for (int32 x = 0; x < plane.width; ++x) {
                mixed[static_cast<std::size_t>(x)] += row.weight * plane.At(x, row.at);
            }
        }
        for (const std::vector<Tap>& column : columns) {
            double sum = 0;
            for (const Tap& tap : column) sum += tap.weight * mixed[static_cast<std::size_t>(tap.at)];
            result.push_back(sum);
        }
    }
    return result;
}

double LaplacianVariance(const std::vector<double>& levels, int32 width, int32 height) {
    if (width < 3 || height < 3) return 0;
    double sum = 0;
    double squares = 0;
    for (int32 y = 1; y < height - 1; ++y) {
        const double* row = levels.data() + static_cast<std::ptrdiff_t>(y) * width;
        for (int32 x = 1; x < width - 1; ++x) {
            const double response = row[x - 1] + row[x + 1] + row[x - width] + row[x + width] - 4 * row[x];
            sum += response;
            squares += response * response;
        }
    }
    const double count = static_cast<double>(width - 2) * (height - 2);
    const double mean = sum / count;
    return std::max(squares / count - mean * mean, 0.0);
}

double SharpnessOf(const Luminance& face) {
    if (face.levels.empty()) return 0;
    return LaplacianVariance(Resampled(face, kSharpnessSide, kSharpnessSide), kSharpnessSide, kSharpnessSide);
}

} // namespace orvane::tools
