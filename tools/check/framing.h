// How a face lies in its picture: room to the edges, and, where the picture is a document's portrait, millimetres.
#pragma once

#include "tools/documents/document.h"
#include "tools/documents/head_geometry.h"
#include "tools/support/face_box.h"
#include "tools/support/picture.h"

namespace orvane::tools {

/// A head's breadth in distances between the eyes: the mean of the men and women of ANSUR II.
inline constexpr double kHeadBreadth = 2.41;

/// Half of it in sides of the face's square.
inline constexpr double kHalfHead = kHeadBreadth * kMedianHead.eyeDistance / 2;

/// Distances to the picture's edges, in sides of the face's square: from the crown, the chin and the head's sides,
/// where they lie in the median. Below zero for what is cut off.
struct Room {
    double above = 0;
    double below = 0;
    double left = 0;
    double right = 0;
};

Room RoomOf(const FaceBox& face, ImageSize picture);

/// The least room for a document: that of the frame which a portrait out of this photograph gets (FrameWithin). On a
/// side where that frame lacks nothing it is at most the room that is there, so that the room is too small on exactly
/// those sides on which the portrait would need a fill.
Room RoomForDocument(const Document& document, const FaceBox& face, ImageSize photo);

/// Whether a picture has the document's proportions, give or take a hundredth: then it is taken for its portrait.
bool HasProportionsOf(const Document& document, ImageSize picture);

/// In millimetres of a portrait, the document's height being that of the picture. A head ends at the skull or, where
/// the document says so, with the hair.
double HeadMillimetres(const FaceBox& face, ImageSize picture, const Document& document);
double AboveHeadMillimetres(const FaceBox& face, ImageSize picture, const Document& document);
double EyeLineMillimetres(const FaceBox& face, ImageSize picture, const Document& document);

} // namespace orvane::tools
