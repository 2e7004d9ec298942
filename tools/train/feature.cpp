// The pool draws kinds and places at random rather than all of them: a random tenth of the possible
// rectangles loses little, as neighbours measure nearly the same.
#include "tools/train/feature.h"

#include "primitives/primitives.h"
#include "tools/train/random.h"

#include <set>
#include <tuple>

namespace orvane::train {
namespace {

constexpr float kSumInit = -16777216.0f; // the detector's

ImageRect RandomRect(Random& random, ImageSize window, int32 minSize) {
    const auto extent = [&](int32 size) {
        const auto length = minSize + static_cast<int32>(random.Below(static_cast<uint32>(size - minSize + 1)));
        return std::pair{static_cast<int32>(random.Below(static_cast<uint32>(size - length + 1))), length};
    };
    const auto [x, width] = extent(window.width);
    const auto [y, height] = extent(window.height);
    return {x, y, width, height};
}

ImageRect Mirrored(ImageRect r, ImageSize window) { return {window.width - r.x - r.width, r.y, r.width, r.height}; }

Feature Make(std::initializer_list<std::pair<ImageRect, float>> parts) {
    Feature feature;
    for (const auto& [rect, weight] : parts) {
        feature.rects[static_cast<std::size_t>(feature.rectCount)] = rect;
        feature.weights[static_cast<std::size_t>(feature.rectCount)] = weight;
        ++feature.rectCount;
    }
    return feature;
}

/// Two halves side by side, or three parts with the middle against the outer ones.
Feature Bands(Random& random, ImageSize window, int32 parts, bool across) {
    ImageRect whole = RandomRect(random, window, 3);
    int32& length = across ? whole.width : whole.height;
    length = length / parts * parts;
    if (length == 0) return {};
    ImageRect inner = whole;
    (across ? inner.width : inner.height) = length / parts;
    if (parts == 3) (across ? inner.x : inner.y) += length / parts;
    return Make({{whole, -1.0f}, {inner, static_cast<float>(parts)}});
}

/// A middle against outer bands of twice its length together: 1, 2, 1.
Feature WideBar(Random& random, ImageSize window, bool across) {
    ImageRect whole = RandomRect(random, window, 4);
    int32& length = across ? whole.width : whole.height;
    length = length / 4 * 4;
    ImageRect inner = whole;
    (across ? inner.width : inner.height) = length / 2;
    (across ? inner.x : inner.y) += length / 4;
    return Make({{whole, -1.0f}, {inner, 2.0f}});
}

Feature CentreSurround(Random& random, ImageSize window) {
    ImageRect whole = RandomRect(random, window, 3);
    whole.width = whole.width / 3 * 3;
    whole.height = whole.height / 3 * 3;
    const ImageRect inner{whole.x + whole.width / 3, whole.y + whole.height / 3, whole.width / 3, whole.height / 3};
    return Make({{whole, -1.0f}, {inner, 9.0f}});
}

/// Two equal rectangles anywhere.
Feature Distant(Random& random, ImageSize window) {
    const ImageRect a = RandomRect(random, {window.width * 2 / 3, window.height * 2 / 3}, 2);
    ImageRect b = a;
    b.x = static_cast<int32>(random.Below(static_cast<uint32>(window.width - a.width + 1)));
    b.y = static_cast<int32>(random.Below(static_cast<uint32>(window.height - a.height + 1)));
    return Make({{a, 1.0f}, {b, -1.0f}});
}

Feature Checker(Random& random, ImageSize window) {
    ImageRect whole = RandomRect(random, window, 4);
    whole.width &= ~1;
    whole.height &= ~1;
    const int32 w = whole.width / 2;
    const int32 h = whole.height / 2;
    return Make({{whole, -1.0f}, {{whole.x, whole.y, w, h}, 2.0f}, {{whole.x + w, whole.y + h, w, h}, 2.0f}});
}

/// A rectangle and its mirror image against one of the same size on the axis.
Feature MirroredAgainstMiddle(Random& random, ImageSize window) {
    const ImageRect a = RandomRect(random, {window.width / 2, window.height}, 2);
    const ImageRect middle{(window.width - a.width) / 2,
                           static_cast<int32>(random.Below(static_cast<uint32>(window.height - a.height + 1))), a.width,
                           a.height};
    return Make({{a, 1.0f}, {Mirrored(a, window), 1.0f}, {middle, -2.0f}});
}

/// Two rectangles on one side against each other, and the same on the other side.
Feature MirroredPairs(Random& random, ImageSize window) {
    const ImageSize half{window.width / 2, window.height};
    const ImageRect a = RandomRect(random, {half.width, half.height * 2 / 3}, 2);
    ImageRect b = a;
    b.x = static_cast<int32>(random.Below(static_cast<uint32>(half.width - a.width + 1)));
    b.y = static_cast<int32>(random.Below(static_cast<uint32>(half.height - a.height + 1)));
    return Make({{a, 1.0f}, {b, -1.0f}, {Mirrored(a, window), 1.0f}, {Mirrored(b, window), -1.0f}});
}

Feature Draw(Random& random, ImageSize window) {
    switch (random.Below(12)) {
    case 0:
    case 1:
        return Bands(random, window, 2, true);
    case 2:
    case 3:
        return Bands(random, window, 2, false);
    case 4:
        return Bands(random, window, 3, true);
    case 5:
        return Bands(random, window, 3, false);
    case 6:
        return WideBar(random, window, random.Below(2) != 0);
    case 7:
        return CentreSurround(random, window);
    case 8:
    case 9:
        return Distant(random, window);
    case 10:
        return random.Below(2) != 0 ? Checker(random, window) : MirroredAgainstMiddle(random, window);
    default:
        return MirroredPairs(random, window);
    }
}

/// A feature that measures something: enough pixels, no rectangle against itself.
bool IsUseful(const Feature& f) {
    if (f.rectCount < 2) return false;
    for (int i = 0; i < f.rectCount; ++i) {
        const ImageRect& r = f.rects[static_cast<std::size_t>(i)];
        if (r.width < 1 || r.height < 1 || r.width * r.height < 3) return false;
        for (int j = 0; j < i; ++j) {
            const ImageRect& q = f.rects[static_cast<std::size_t>(j)];
            if (q.x == r.x && q.y == r.y && q.width == r.width && q.height == r.height) return false;
        }
    }
    return true;
}

} // namespace

Patch::Patch(const uint8* pixels, ImageSize windowSize)
    : sum_(static_cast<std::size_t>((windowSize.width + 1) * (windowSize.height + 1))), stride_(windowSize.width + 1) {
    std::vector<double> squares(sum_.size());
    primSqrIntegral_8u32f64f_C1(pixels, windowSize.width, sum_.data(), 4 * stride_, squares.data(), 8 * stride_,
                                windowSize, kSumInit, 0.0);
    primRectStdDev_32f_C1(sum_.data(), 4 * stride_, squares.data(), 8 * stride_, &deviation_, 4, {1, 1},
                          {1, 1, windowSize.width - 2, windowSize.height - 2});
}

double Patch::Measure(const Feature& feature, float norm) const {
    double total = 0.0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(feature.rectCount); ++i) {
        const ImageRect& r = feature.rects[i];
        const float* low = sum_.data() + PixelIndex(r.x, r.y, stride_);
        const float* high = low + PixelIndex(0, r.height, stride_);
        const float weight = feature.weights[i] * norm;
        total += (static_cast<double>(high[r.width]) - high[0] - low[r.width] + low[0]) * weight;
    }
    return total;
}

float AreaNorm(ImageSize windowSize) {
    return static_cast<float>(1.0 / ((windowSize.height - 2) * (windowSize.width - 2)));
}

std::vector<Feature> MakeFeaturePool(ImageSize windowSize, int count, uint64 seed) {
    constexpr std::size_t kNumbers = 4 * kMaxRects + 1; // the count, and four of each rectangle
    using Key = std::array<int32, kNumbers>;
    std::vector<Feature> pool;
    std::set<Key> seen;
    Random random({seed, 0xfea7});
    for (int64 tries = 0; static_cast<int>(pool.size()) < count && tries < int64{100} * count; ++tries) {
        const Feature feature = Draw(random, windowSize);
        if (!IsUseful(feature)) continue;
        Key key{};
        key[0] = feature.rectCount;
        for (std::size_t i = 0; i < kMaxRects; ++i) {
            const ImageRect& r = feature.rects[i];
            key[4 * i + 1] = r.x;
            key[4 * i + 2] = r.y;
            key[4 * i + 3] = r.width;
            key[4 * i + 4] = r.height;
        }
        if (seen.insert(key).second) pool.push_back(feature);
    }
    return pool;
}

} // namespace orvane::train
