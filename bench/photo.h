// The photograph that the benchmarks work on, in any size.
#pragma once

#include "image/image_buffer.h"
#include "orvane/orvane.h"

#include <string>

namespace orvane::bench {

/// Reads the photograph to work on. Without one (an empty path) a pattern of noise and soft shapes takes
/// its place, in which no face is to be expected. False, with a line on standard error, when the file
/// can't be read.
bool LoadPhoto(const std::string& path);

/// The photograph scaled to `size` (its proportions give way), as a three-channel picture.
void MakePhoto(ImageSize size, ImageBuffer& picture);

/// The pattern that has no face, in any size.
void MakeFaceFree(ImageSize size, ImageBuffer& picture);

/// A picture as a packed bitmap, which the caller frees.
orv_Handle Packed(const ImageBuffer& photo);

/// The photograph as a packed bitmap, which the caller frees.
orv_Handle PackedPhoto(ImageSize size);

} // namespace orvane::bench
