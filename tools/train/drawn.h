// Face-free pictures out of nothing but numbers: many shapes over one another, as things stand in front of things.
#pragma once

#include "tools/train/random.h"
#include "tools/train/scan.h"

namespace orvane::train {

/// Shapes of all sizes, round and angular, flat, shaded, striped or grained, each covering what was drawn before.
/// Pairs and rows of like shapes are among them, since those are what a face is mistaken for.
GreyPicture DrawnPicture(ImageSize size, Random random);

} // namespace orvane::train
