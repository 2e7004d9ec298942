#include "tools/train/square.h"

#include <algorithm>

namespace orvane::train {

FaceSquare Map(const FaceSquare& detected, const SquareMapping& mapping) {
    const double side = detected.side * mapping.boxToWindow;
    const double centreX = detected.x + detected.side / 2;
    const double centreY = detected.y + detected.side / 2 + mapping.down * detected.side;
    return {centreX - side / 2, centreY - side / 2, side};
}

double OverlapOf(const FaceSquare& a, const FaceSquare& b) {
    const double w = std::min(a.x + a.side, b.x + b.side) - std::max(a.x, b.x);
    const double h = std::min(a.y + a.side, b.y + b.side) - std::max(a.y, b.y);
    if (w <= 0.0 || h <= 0.0) return 0.0;
    return w * h / (a.side * a.side + b.side * b.side - w * h);
}

bool IsRight(const FaceSquare& detected, const FaceSquare& truth, const SquareMapping& mapping) {
    return OverlapOf(Map(detected, mapping), truth) >= kRightOverlap;
}

} // namespace orvane::train
