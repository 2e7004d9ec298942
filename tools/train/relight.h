// Light that makes faces hard to see, put on face crops.
#pragma once

#include "tools/train/random.h"

#include <vector>

namespace orvane::train {

/// A face crop while it is changed: kCropSide rows of grey values, lowest row first.
using CropPlane = std::vector<double>;

/// Puts one or two of these on the crop, by chance: light from one side, a bent scale of grey, a face that is darker
/// than its backdrop with fainter brows and stronger shine, and so little contrast that bytes and noise show.
void Relight(CropPlane& crop, Random& random);

} // namespace orvane::train
