#include "tools/documents/frame.h"

#include "tools/documents/head_geometry.h"

#include <algorithm>
#include <cstdio>

namespace orvane::tools {
namespace {

/// Of the height, or of that of the largest 35 by 45 in a wide frame, where no band is given.
constexpr double kPlainHead = 0.75;
constexpr double kPlainAspect = 9.0 / 7.0;
/// How the room that a head with its hair leaves is shared out, and the least that either side keeps.
constexpr double kRoomBelow = 2.0 / 3.0;
constexpr double kLeastRoom = 0.15;
/// What of a band may be used to make a frame fit, and how far a head may stand aside, of the width.
constexpr double kUsedOfBand = 0.8;
constexpr double kGrowth = 0.5;
constexpr int kGrowthSteps = 5;
constexpr double kAside = 0.04;
/// Less than this many millimetres is what the rounding of the square's place may make.
constexpr double kNoShortage = 0.05;

struct Range {
    double low;
    double high;

    double Nearest(double value) const { return std::max(low, std::min(value, high)); }
};

double Middle(const Band& band, double plain) {
    if (band.low && band.high) return (*band.low + *band.high) / 2;
    if (band.low) return std::max(plain, *band.low * 1.05);
    return band.high ? std::min(plain, *band.high * 0.95) : plain;
}

/// The band's inner part; as wide as the frame where an end is open.
Range Used(const Band& band, double most) {
    const double low = band.low.value_or(0);
    const double high = band.high.value_or(most);
    const double rim = (high - low) * (1 - kUsedOfBand) / 2;
    return {low + (band.low ? rim : 0), high - (band.high ? rim : 0)};
}

/// A head of a size in the frame, all lengths in millimetres.
class Placing {
public:
    Placing(const FrameWish& wish, double head) : wish_(wish), head_(head) {
        const HeadGeometry& median = kMedianHead;
        const double height = median.Height(wish.headTop);
        side_ = wish.cropRatio ? wish.height / (3 * *wish.cropRatio) : head / height;
        toHair_ = (median.eyes - median.hair) * side_;
        toTop_ = (median.eyes - median.Top(wish.headTop)) * side_;
        toChin_ = (median.chin - median.eyes) * side_;
        if (wish.cropRatio) head_ = height * side_;
    }

    double Head() const { return head_; }
    double Side() const { return side_; }

    /// The line of the eyes above the lower edge.
    double Eyes() const {
        if (wish_.cropRatio) return wish_.height / 2 + (0.5 - kMedianHead.eyes) * side_;
        const double plain = toChin_ + Room() * kRoomBelow;
        double eyes = plain;
        if (!wish_.eyes.IsOpen()) {
            eyes = Middle(wish_.eyes, plain);
        } else if (!wish_.above.IsOpen()) {
            eyes = wish_.height - toTop_ - Middle(wish_.above, wish_.height - toTop_ - plain);
        }
        return Freedom().Nearest(eyes);
    }

    /// Where the eyes may be: within what the bands say; within that, with some room above the hair and below the chin.
    Range Freedom() const {
        const double room = std::max(Room(), 0.0);
        const Range whole{toChin_ + room * kLeastRoom, wish_.height - toHair_ - room * kLeastRoom};
        Range band{0, wish_.height};
        if (!wish_.eyes.IsOpen()) {
            band = Used(wish_.eyes, wish_.height);
        } else if (!wish_.above.IsOpen()) {
            const Range above = Used(wish_.above, wish_.height);
            band = {wish_.height - toTop_ - above.high, wish_.height - toTop_ - above.low};
        }
        return {band.Nearest(whole.low), band.Nearest(whole.high)};
    }

    FramePlan PlanAt(const PlaneRect& square, double eyes) const {
        const double scale = square.width / side_; // pixels a millimetre
        FramePlan plan;
        plan.head = head_;
        plan.eyes = eyes;
        plan.frame.width = wish_.width * scale;
        plan.frame.height = wish_.height * scale;
        plan.frame.left = square.left + kMedianHead.middle * square.width - plan.frame.width / 2;
        plan.frame.top = square.top + kMedianHead.eyes * square.height - (wish_.height - eyes) * scale;
        return plan;
    }

private:
    double Room() const { return wish_.height - toHair_ - toChin_; }

    const FrameWish& wish_;
    double head_;
    double side_;
    double toHair_;
    double toTop_;
    double toChin_;
};

double PlainHead(const FrameWish& wish) {
    const double head = Middle(wish.head, kPlainHead * std::min(wish.height, wish.width * kPlainAspect));
    return std::min(head, std::max(wish.height, wish.head.low.value_or(0))); // some more than the least may be too much
}

Shortage Missing(const FrameWish& wish, const PlaneRect& frame, const PlaneRect& bounds) {
    const double millimetres = wish.height / frame.height;
    const auto lack = [&](double pixels) { return pixels * millimetres > kNoShortage ? pixels * millimetres : 0.0; };
    return {lack(bounds.left - frame.left), lack(bounds.top - frame.top), lack(frame.Right() - bounds.Right()),
            lack(frame.Bottom() - bounds.Bottom())};
}

bool IsNothing(const Shortage& missing) {
    return missing.left == 0 && missing.top == 0 && missing.right == 0 && missing.bottom == 0;
}

/// Moved as far as it must be, and as far as it may be.
FramePlan Moved(const FrameWish& wish, const Placing& placing, const PlaneRect& square, const PlaneRect& bounds) {
    FramePlan plan = placing.PlanAt(square, placing.Eyes());
    const double scale = square.width / placing.Side();
    if (!wish.cropRatio) {
        const Range freedom = placing.Freedom();
        // A frame that begins above the photograph goes down: its eyes then stand higher in it.
        const double higher = std::max(bounds.top - plan.frame.top, 0.0) / scale;
        const double lower = std::max(plan.frame.Bottom() - bounds.Bottom(), 0.0) / scale;
        plan = placing.PlanAt(square, freedom.Nearest(plan.eyes + higher - lower));
        const double aside =
            std::max(bounds.left - plan.frame.left, 0.0) - std::max(plan.frame.Right() - bounds.Right(), 0.0);
        const double most = kAside * plan.frame.width;
        plan.frame.left += std::max(-most, std::min(aside, most));
    }
    plan.missing = Missing(wish, plan.frame, bounds);
    plan.fits = IsNothing(plan.missing);
    return plan;
}

} // namespace

FrameWish WishOf(const Document& document) {
    FrameWish wish;
    wish.name = document.name;
    wish.width = document.width;
    wish.height = document.height;
    wish.resolution = document.resolution;
    wish.head = document.head;
    wish.headTop = document.headTop;
    wish.eyes = document.eyes;
    wish.above = document.above;
    wish.isStrict = !document.head.IsOpen();
    return wish;
}

FramePlan PlainFrame(const FrameWish& wish, const PlaneRect& square) {
    const Placing placing(wish, PlainHead(wish));
    return placing.PlanAt(square, placing.Eyes());
}

FramePlan FrameWithin(const FrameWish& wish, const PlaneRect& square, const PlaneRect& bounds) {
    const double head = PlainHead(wish);
    const double most = head + (wish.head.high.value_or(head) - head) * kGrowth;
    for (int step = 0; step <= kGrowthSteps; ++step) {
        const Placing placing(wish, head + (most - head) * step / kGrowthSteps);
        const FramePlan plan = Moved(wish, placing, square, bounds);
        if (plan.fits) return plan;
    }
    FramePlan plan = PlainFrame(wish, square);
    plan.missing = Missing(wish, plan.frame, bounds);
    return plan;
}

PlaneRect MovedInside(const PlaneRect& frame, const PlaneRect& bounds) {
    const double shrink = std::min({1.0, bounds.width / frame.width, bounds.height / frame.height});
    PlaneRect inside = frame;
    inside.width *= shrink;
    inside.height *= shrink;
    inside.left += (frame.width - inside.width) / 2;
    inside.top += (frame.height - inside.height) / 2;
    inside.left = std::max(bounds.left, std::min(inside.left, bounds.Right() - inside.width));
    inside.top = std::max(bounds.top, std::min(inside.top, bounds.Bottom() - inside.height));
    return inside;
}

std::string ShortageText(const Shortage& missing) {
    std::string text;
    for (const auto& [millimetres, side] :
         {std::pair{missing.top, "above"}, std::pair{missing.bottom, "below"}, std::pair{missing.left, "on the left"},
          std::pair{missing.right, "on the right"}}) {
        if (millimetres == 0) continue;
        char part[64];
        std::snprintf(part, sizeof part, "%s%.1f mm %s", text.empty() ? "" : ", ", millimetres, side);
        text += part;
    }
    return text;
}

} // namespace orvane::tools
