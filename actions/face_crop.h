// Slot 0 of the pipeline: cuts a rectangle around the face.
#pragma once

#include "image/image_buffer.h"

namespace orvane {

/// Where the crop of the present face lies in a picture of this size, in stored rows. The width is a
/// multiple of 4; it may be 0 for a tiny face, and both sizes for a face beyond the picture.
ImageRect FaceCropRect(ImageSize picture);

/// Cuts three times the crop factors of the face's size, centred on the face and limited to the
/// picture, out of `source`. 0; 10 when no face stands, with `destination` left alone; -50 without
/// storage, also for a crop without pixels; -20 when the copy fails.
int32 ActionFaceCrop(const ImageBuffer& source, ImageBuffer& destination);

} // namespace orvane
