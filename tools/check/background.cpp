#include "tools/check/background.h"

#include "tools/check/framing.h"
#include "tools/check/levels.h"

#include <algorithm>

namespace orvane::tools {
namespace {

/// Columns of a strip as distances from the head's side; an empty one begins where it ends.
struct Reach {
    double inner;
    double outer;
};

Reach ReachOf(double side, double room) {
    const double outer = std::min(room, side);
    const double inner = std::clamp(room / 2, 0.05 * side, 0.4 * side);
    return outer - inner < 0.05 * side ? Reach{0, 0} : Reach{inner, outer};
}

ImageRect Strip(const FaceBox& face, ImageSize picture, int32 left, int32 right) {
    const auto top = static_cast<int32>(face.y + kMedianHead.crown * face.height);
    const auto bottom = static_cast<int32>(face.y + kMedianHead.eyes * face.height);
    const int32 first = std::clamp<int32>(top, 0, picture.height);
    const int32 last = std::clamp<int32>(bottom, first, picture.height);
    return {left, first, right - left, last - first};
}

} // namespace

ImageRect StripLeftOf(const FaceBox& face, ImageSize picture) {
    const double head = face.x + (0.5 - kHalfHead) * face.width;
    const Reach reach = ReachOf(face.width, head);
    return Strip(face, picture, static_cast<int32>(head - reach.outer), static_cast<int32>(head - reach.inner));
}

ImageRect StripRightOf(const FaceBox& face, ImageSize picture) {
    const double head = face.x + (0.5 + kHalfHead) * face.width;
    const Reach reach = ReachOf(face.width, picture.width - head);
    return Strip(face, picture, static_cast<int32>(head + reach.inner), static_cast<int32>(head + reach.outer));
}

std::optional<Background> BackgroundOf(const Picture& picture, const FaceBox& face) {
    const ImageSize size{picture.width, picture.height};
    LevelCounts counts;
    counts.Add(LuminanceOf(picture, StripLeftOf(face, size)));
    counts.Add(LuminanceOf(picture, StripRightOf(face, size)));
    if (counts.Pixels() == 0) return std::nullopt;
    return Background{static_cast<double>(counts.Percentile(50)),
                      static_cast<double>(counts.Percentile(95) - counts.Percentile(5))};
}

} // namespace orvane::tools
