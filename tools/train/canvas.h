// Drawing on small pictures: what a contact sheet is made of. Places count from the top left; what lies outside
// is left out.
#pragma once

#include "tools/support/picture.h"
#include "tools/train/square.h"

#include <string>

namespace orvane::train {

struct Colour {
    uint8 red, green, blue;
    bool operator==(const Colour&) const = default;
};

/// A picture of one colour.
tools::Picture Blank(int32 width, int32 height, Colour colour);

/// The picture in another size, longest side `side`: means of pixels where it shrinks, the nearest where it grows.
tools::Picture Resized(const tools::Picture& picture, int32 side);

Colour PixelAt(const tools::Picture& picture, int32 x, int32 y);
void FillArea(tools::Picture& picture, int32 x, int32 y, int32 width, int32 height, Colour colour);

/// The outline of a square, two pixels thick, inwards; nothing of an empty one.
void DrawSquare(tools::Picture& picture, const FaceSquare& square, Colour colour);

void Paste(const tools::Picture& from, tools::Picture& onto, int32 x, int32 y);

inline constexpr int32 kLetterWidth = 8; // with the gap to the next
inline constexpr int32 kLetterHeight = 10;

/// Letters, digits and the signs of file names, in capitals; anything else as a question mark.
void DrawText(tools::Picture& picture, int32 x, int32 y, const std::string& text, Colour colour);

} // namespace orvane::train
