// Where the parts of a head lie, as told by the square that the detector finds.
#pragma once

namespace orvane::tools {

/// Lengths in sides of the square, places from its upper edge downwards; medians over measured portraits, see
/// data/README.md.
struct HeadGeometry {
    double crown = -0.25; ///< The skull's top, without hair standing up.
    double eyes = 0.37;
    double chin = 1.05;
    double eyeDistance = 0.42; ///< Between the centres of the eyes.

    double Height() const { return chin - crown; }
};

inline constexpr HeadGeometry kMedianHead;

} // namespace orvane::tools
