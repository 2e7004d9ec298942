#include "tools/check/framing.h"

#include <cmath>

namespace orvane::tools {
namespace {

/// The middle of a band with two ends, the end of one with one, else the other value.
double MiddleOr(const Band& band, double other) {
    if (band.low && band.high) return (*band.low + *band.high) / 2;
    return band.low ? *band.low : band.high.value_or(other);
}

} // namespace

Room RoomOf(const FaceBox& face, ImageSize picture) {
    const double width = face.width;
    const double height = face.height;
    Room room;
    room.above = face.y / height + kMedianHead.crown;
    room.below = (picture.height - face.y) / height - kMedianHead.chin;
    room.left = face.x / width + 0.5 - kHalfHead;
    room.right = (picture.width - face.x) / width - 0.5 - kHalfHead;
    return room;
}

Room RoomForDocument(const Document& document) {
    const double head = MiddleOr(document.head, 0.75 * document.height);
    const double side = head / kMedianHead.Height(document.headTop);
    const double chin = (kMedianHead.chin - kMedianHead.eyes) * side;
    const double around = document.height - head;
    const double above = MiddleOr(document.above, around / 2);
    const double below = MiddleOr(document.eyes, around - above + chin) - chin;
    Room room;
    room.below = below / side;
    room.above = (document.height - below) / side - kMedianHead.Height();
    room.left = room.right = document.width / 2 / side - kHalfHead;
    return room;
}

bool HasProportionsOf(const Document& document, ImageSize picture) {
    return std::abs(picture.width * document.height / (picture.height * document.width) - 1) <= 0.01;
}

double HeadMillimetres(const FaceBox& face, ImageSize picture, const Document& document) {
    return kMedianHead.Height(document.headTop) * face.height * document.height / picture.height;
}

double AboveHeadMillimetres(const FaceBox& face, ImageSize picture, const Document& document) {
    return (face.y + kMedianHead.Top(document.headTop) * face.height) * document.height / picture.height;
}

double EyeLineMillimetres(const FaceBox& face, ImageSize picture, const Document& document) {
    const double eyes = face.y + kMedianHead.eyes * face.height;
    return (picture.height - eyes) * document.height / picture.height;
}

} // namespace orvane::tools
