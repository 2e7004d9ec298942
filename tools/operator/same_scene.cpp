#include "tools/operator/same_scene.h"

#include <array>
#include <cmath>

namespace orvane::tools {
namespace {

constexpr int64 kFields = 16;
constexpr double kSameLevels = 4; // mean difference; scaling makes less, another part of a photo a multiple

using Means = std::array<double, kFields * kFields * 3>;

/// Mean of each field and channel. A picture of fewer pixels than fields has some of them twice.
Means FieldMeans(const PixelRows& picture) {
    Means means{};
    std::size_t next = 0;
    for (int64 fieldY = 0; fieldY < kFields; ++fieldY) {
        const auto top = static_cast<int32>(fieldY * picture.height / kFields);
        const auto end = static_cast<int32>(((fieldY + 1) * picture.height + kFields - 1) / kFields);
        for (int64 fieldX = 0; fieldX < kFields; ++fieldX) {
            const auto left = static_cast<int32>(fieldX * picture.width / kFields);
            const auto right = static_cast<int32>(((fieldX + 1) * picture.width + kFields - 1) / kFields);
            std::array<int64, 3> sums{};
            for (int32 y = top; y < end; ++y) {
                const uint8* pixel = RowAt(picture.pixels, picture.Step(), y) + std::ptrdiff_t{3} * left;
                for (int32 x = left; x < right; ++x) {
                    for (std::size_t channel = 0; channel < 3; ++channel) sums[channel] += *pixel++;
                }
            }
            const double count = static_cast<double>(right - left) * (end - top);
            for (const int64 sum : sums) means[next++] = static_cast<double>(sum) / count;
        }
    }
    return means;
}

} // namespace

bool ShowSameScene(const PixelRows& a, const PixelRows& b) {
    const Means of = FieldMeans(a);
    const Means to = FieldMeans(b);
    double difference = 0;
    for (std::size_t i = 0; i < of.size(); ++i) difference += std::fabs(of[i] - to[i]);
    return difference <= kSameLevels * static_cast<double>(of.size());
}

} // namespace orvane::tools
