// The affine map of a rotation, shared by the geometry queries and the rotations themselves.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// x' = cosine*x + sine*y + xShift, y' = -sine*x + cosine*y + yShift.
struct RotationMap {
    double cosine;
    double sine;
    double xShift;
    double yShift;

    double MapX(double x, double y) const { return cosine * x + sine * y + xShift; }
    double MapY(double x, double y) const { return -sine * x + cosine * y + yShift; }
};

/// The angle brought to 0 up to 360 degrees; not a number where the angle is not finite.
double ReducedAngle(double angle);

/// The map of a reduced angle; its coefficients are no numbers where the angle is none.
RotationMap MakeRotationMap(double reducedAngle, double xShift, double yShift);

/// True for the reduced angles 90, 180 and 270, whose coefficients are whole numbers.
bool IsExactTurn(double reducedAngle);

/// The corners of a rectangle's pixels under the map: top left, top right, bottom right, bottom left.
void MapCorners(const RotationMap& map, ImageRect rect, double quad[4][2]);

} // namespace orvane
