#include "tools/check/framing.h"

#include "tools/documents/frame.h"

#include <algorithm>
#include <cmath>

namespace orvane::tools {
namespace {

/// To the edges of a part of the picture's plane, which may reach beyond it.
Room RoomWithin(const FaceBox& face, const PlaneRect& part) {
    const double width = face.width;
    const double height = face.height;
    Room room;
    room.above = (face.y - part.top) / height + kMedianHead.crown;
    room.below = (part.Bottom() - face.y) / height - kMedianHead.chin;
    room.left = (face.x - part.left) / width + 0.5 - kHalfHead;
    room.right = (part.Right() - face.x) / width - 0.5 - kHalfHead;
    return room;
}

PlaneRect WholeOf(ImageSize picture) {
    return {0, 0, static_cast<double>(picture.width), static_cast<double>(picture.height)};
}

} // namespace

Room RoomOf(const FaceBox& face, ImageSize picture) { return RoomWithin(face, WholeOf(picture)); }

Room RoomForDocument(const Document& document, const FaceBox& face, ImageSize photo) {
    const PlaneRect square{static_cast<double>(face.x), static_cast<double>(face.y), static_cast<double>(face.width),
                           static_cast<double>(face.height)};
    const FramePlan plan = FrameWithin(WishOf(document), square, WholeOf(photo));
    const Room there = RoomOf(face, photo);
    Room least = RoomWithin(face, plan.frame);
    if (plan.missing.top == 0) least.above = std::min(least.above, there.above);
    if (plan.missing.bottom == 0) least.below = std::min(least.below, there.below);
    if (plan.missing.left == 0) least.left = std::min(least.left, there.left);
    if (plan.missing.right == 0) least.right = std::min(least.right, there.right);
    return least;
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
