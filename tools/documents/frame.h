// The frame of a document around a face: which part of the photograph becomes the portrait. Plain geometry, with y
// downwards; what a head is to a square is told by kMedianHead.
#pragma once

#include "tools/documents/document.h"

#include <optional>
#include <string>

namespace orvane::tools {

/// What stands where the photograph ends before the frame does.
struct Fill {
    enum class Kind { none, edge, colour } kind = Kind::none;
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

/// A portrait of a size in millimetres, by a document or by hand.
struct FrameWish {
    std::string name; ///< Of the document; empty for a size given by hand.
    double width = 35;
    double height = 45;
    double resolution = 300;
    Band head{32, 36}; ///< Open: about three quarters of the height.
    HeadTop headTop = HeadTop::unsaid;
    Band eyes;
    Band above;
    std::optional<double>
        cropRatio;         ///< In place of the bands: the height is three times this many sides of the square.
    bool isStrict = false; ///< No portrait rather than one with the head out of its band.
    Fill fill;
};

/// What a document asks for.
FrameWish WishOf(const Document& document);

/// A rectangle in pixels.
struct PlaneRect {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;

    double Right() const { return left + width; }
    double Bottom() const { return top + height; }
};

/// By how many millimetres a photograph ends before the frame does.
struct Shortage {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

struct FramePlan {
    PlaneRect frame;
    double head = 0; ///< Millimetres from the chin to the head's top that the frame gives a median head.
    double eyes = 0; ///< Millimetres from the lower edge to its eyes.
    bool fits = false;
    Shortage missing; ///< Of a frame that does not fit.
};

/// The frame around the detector's square as the wish has it, wherever it reaches: the head in the middle of its band;
/// the eyes in the middle of theirs, or the head's top, or else a third of the room above the hair.
FramePlan PlainFrame(const FrameWish& wish, const PlaneRect& square);

/// A frame within `bounds`: the plain one, or the nearest that the bands leave room for. The head may grow halfway to
/// the end of its band, eyes and head's top may use four fifths of theirs, and the face may stand aside by 4 % of the
/// width. Where none fits the answer is the plain one and what it lacks.
FramePlan FrameWithin(const FrameWish& wish, const PlaneRect& square, const PlaneRect& bounds);

/// `frame` moved into `bounds` and, where it is too large, made smaller in the same proportions.
PlaneRect MovedInside(const PlaneRect& frame, const PlaneRect& bounds);

/// "3.2 mm above, 1.0 mm on the left".
std::string ShortageText(const Shortage& missing);

} // namespace orvane::tools
