// What people wear in front of a face, drawn on face crops.
#pragma once

#include "tools/train/relight.h"

namespace orvane::train {

/// Draws one or two of these: glasses, clear or dark, a beard, a hat or cap, a scarf or hood around the face. Eyes and
/// mouth are where the framing of crops puts them.
void Cover(CropPlane& crop, Random& random);

} // namespace orvane::train
