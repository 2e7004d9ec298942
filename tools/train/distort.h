// Pictures changed so that windows cut out of them look unlike any of the plain picture's.
#pragma once

#include "tools/train/random.h"
#include "tools/train/scan.h"

namespace orvane::train {

/// The picture turned about its middle, stretched, mirrored, in other light and now and then with dark and bright
/// exchanged, each by chance. It keeps its size; what the frame would leave empty is filled by reflection.
/// What is no face stays none.
GreyPicture Distorted(const GreyPicture& picture, Random random);

/// Two pictures in one: their mean, product, brighter or darker pixels, or parts side by side. It has the size of the
/// first; where the second is smaller it is repeated.
GreyPicture Combined(const GreyPicture& picture, const GreyPicture& other, Random random);

/// A picture of a face so changed that it shows none: turned by 55 degrees and more, its halves exchanged, or dark
/// and bright. What is no face stays none here too.
GreyPicture Jumbled(const GreyPicture& picture, Random random);

} // namespace orvane::train
