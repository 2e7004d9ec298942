// Pictures of the seam (bottom row first, blue, green, red, padded rows) as the toolkit's images and back.
#pragma once

#include "session/window.h"

#include <QImage>

namespace orvane {

/// A copy with the top row first; null for a picture without pixels.
QImage ImageOf(PictureView picture);

/// Writes a text into a picture. From any thread; nothing without an application object, which the fonts need.
void WriteTextInto(uint8* bits, int32 width, int32 height, const TextMark& mark);

} // namespace orvane
