// Where the parts of a head lie, as told by the square that the detector finds.
#pragma once

#include "tools/documents/document.h"

namespace orvane::tools {

/// Lengths in sides of the square, places from its upper left corner to the right and downwards; medians over measured
/// portraits, see data/README.md.
struct HeadGeometry {
    double hair = -0.69;  ///< The hair's top.
    double crown = -0.58; ///< The skull's top, below the hair.
    double eyes = 0.34;
    double chin = 1.28;
    double middle = 0.52;       ///< Between the eyes.
    double eyeDistance = 0.505; ///< Between the centres of the eyes.

    double Height() const { return chin - crown; }

    /// Where a head ends above for an authority, and how high it is for that.
    double Top(HeadTop top) const { return top == HeadTop::hair ? hair : crown; }
    double Height(HeadTop top) const { return chin - Top(top); }
};

inline constexpr HeadGeometry kMedianHead;

} // namespace orvane::tools
