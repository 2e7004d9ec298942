// Geometry of rotations: the reduced angle, the map, shift, quad and bound.
#include "primitives/rotation_map.h"

#include "primitives/rotate.h"
#include "primitives/sine_cosine.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvane {

double ReducedAngle(double angle) {
    // Whole turns taken away as a product are exact as long as that is: farther out a remainder is, at any distance.
    constexpr double kFarthest = 9007199254740992.0; // 2^53
    if (std::abs(angle) >= kFarthest) angle = std::fmod(angle, 360.0);
    const double reduced = angle - std::trunc(angle / 360.0) * 360.0;
    return reduced < 0.0 ? reduced + 360.0 : reduced;
}

bool IsExactTurn(double reducedAngle) { return reducedAngle == 90.0 || reducedAngle == 180.0 || reducedAngle == 270.0; }

RotationMap MakeRotationMap(double reducedAngle, double xShift, double yShift) {
    if (reducedAngle == 90.0) return {0.0, 1.0, xShift, yShift};
    if (reducedAngle == 180.0) return {-1.0, 0.0, xShift, yShift};
    if (reducedAngle == 270.0) return {0.0, -1.0, xShift, yShift};
    if (!std::isfinite(reducedAngle)) {
        constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
        return {kNone, kNone, xShift, yShift};
    }
    const SineCosine direction = SineCosineOf(reducedAngle / 180.0 * 3.141592653589793);
    return {direction.cosine, direction.sine, xShift, yShift};
}

void MapCorners(const RotationMap& map, ImageRect rect, double quad[4][2]) {
    const double x0 = rect.x, x1 = static_cast<double>(int64{rect.x} + rect.width - 1);
    const double y0 = rect.y, y1 = static_cast<double>(int64{rect.y} + rect.height - 1);
    const double corners[4][2] = {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
    for (int32 i = 0; i < 4; ++i) {
        quad[i][0] = map.MapX(corners[i][0], corners[i][1]);
        quad[i][1] = map.MapY(corners[i][0], corners[i][1]);
    }
}

namespace generic {

int32 primGetRotateShift(double xCenter, double yCenter, double angle, double* xShift, double* yShift) {
    if (xShift == nullptr || yShift == nullptr) return kNullPointer;
    const double reduced = ReducedAngle(angle);
    if (reduced == 0.0) {
        *xShift = *yShift = 0.0;
    } else if (reduced == 90.0) {
        *xShift = xCenter - yCenter;
        *yShift = yCenter + xCenter;
    } else if (reduced == 180.0) {
        *xShift = 2.0 * xCenter;
        *yShift = 2.0 * yCenter;
    } else if (reduced == 270.0) {
        *xShift = xCenter + yCenter;
        *yShift = yCenter - xCenter;
    } else {
        const RotationMap map = MakeRotationMap(reduced, 0.0, 0.0);
        *xShift = xCenter - xCenter * map.cosine - yCenter * map.sine;
        *yShift = yCenter - map.cosine * yCenter + map.sine * xCenter;
    }
    return kOk;
}

int32 primGetRotateQuad(ImageRect srcRoi, double quad[4][2], double angle, double xShift, double yShift) {
    if (quad == nullptr) return kNullPointer;
    if (srcRoi.x < 0 || srcRoi.y < 0 || srcRoi.width < 1 || srcRoi.height < 1) return kBadSize;
    MapCorners(MakeRotationMap(ReducedAngle(angle), xShift, yShift), srcRoi, quad);
    return kOk;
}

int32 primGetRotateBound(ImageRect srcRoi, double bound[2][2], double angle, double xShift, double yShift) {
    if (bound == nullptr) return kNullPointer;
    double quad[4][2];
    const int32 status = primGetRotateQuad(srcRoi, quad, angle, xShift, yShift);
    if (status != kOk) return status;
    for (int32 axis = 0; axis < 2; ++axis) {
        bound[0][axis] = std::min({quad[0][axis], quad[1][axis], quad[2][axis], quad[3][axis]});
        bound[1][axis] = std::max({quad[0][axis], quad[1][axis], quad[2][axis], quad[3][axis]});
    }
    return kOk;
}

} // namespace generic
} // namespace orvane
