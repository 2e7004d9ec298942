#include "tools/check/checks.h"

#include "tools/check/background.h"
#include "tools/check/framing.h"
#include "tools/check/levels.h"
#include "tools/check/sharpness.h"
#include "tools/documents/head_geometry.h"

namespace orvane::tools {
namespace {

// Bands of which docs/checks.md tells the reasons.
constexpr double kLeastEyeDistance = 90;
constexpr double kLeastSharpness = 60;
constexpr double kMostShadows = 1;
constexpr double kMostHighlights = 1;
constexpr double kLeastPlainLight = 140;
constexpr double kLeastWhite = 200;
constexpr double kMostSpread = 50;
constexpr Room kLeastRoom = {0.0, 0.0, 0.1, 0.1};
constexpr Band kCentredFace = {45.0, 55.0};

class Checks {
public:
    Checks(const Picture& picture, const FaceBox& face, const Document* document)
        : picture_(picture), face_(face), size_{picture.width, picture.height}, document_(document),
          isPortrait_(document != nullptr && HasProportionsOf(*document, size_)) {}

    Measures All(std::optional<int32> faces) {
        if (faces) {
            Set(MeasureKind::faces, *faces, {1.0, 1.0});
        } else {
            Leave(MeasureKind::faces, "the face was marked by hand");
        }
        MeasureFraming();
        MeasureRoom();
        Set(MeasureKind::eyeDistance, kMedianHead.eyeDistance * face_.width, {kLeastEyeDistance, {}});
        MeasureFace();
        MeasureBackground();
        return measures_;
    }

private:
    void Set(MeasureKind kind, double value, const Band& band) { At(measures_, kind) = {value, band, ""}; }
    void Leave(MeasureKind kind, const char* reason) { At(measures_, kind) = {{}, {}, reason}; }

    void MeasureFraming() {
        Set(MeasureKind::faceSize, face_.height, {});
        const double centre = face_.x + face_.width / 2.0;
        Set(MeasureKind::faceX, 100.0 * centre / picture_.width, isPortrait_ ? kCentredFace : Band());
        if (isPortrait_) {
            Set(MeasureKind::headHeight, HeadMillimetres(face_, size_, *document_), document_->head);
            Set(MeasureKind::eyeLine, EyeLineMillimetres(face_, size_, *document_), document_->eyes);
            Set(MeasureKind::aboveHead, AboveHeadMillimetres(face_, size_, *document_), document_->above);
            return;
        }
        const char* reason = document_ == nullptr ? "no document was named" : "not of the document's proportions";
        Leave(MeasureKind::headHeight, reason);
        Leave(MeasureKind::eyeLine, reason);
        Leave(MeasureKind::aboveHead, reason);
    }

    void MeasureRoom() {
        const Room room = RoomOf(face_, size_);
        Room least = kLeastRoom;
        // A portrait was cut already: nothing may be cut off, and the millimetres tell the rest.
        if (document_ != nullptr) least = isPortrait_ ? Room() : RoomForDocument(*document_, face_, size_);
        Set(MeasureKind::roomAbove, room.above, {least.above, {}});
        Set(MeasureKind::roomBelow, room.below, {least.below, {}});
        Set(MeasureKind::roomLeft, room.left, {least.left, {}});
        Set(MeasureKind::roomRight, room.right, {least.right, {}});
    }

    void MeasureFace() {
        const Luminance square = LuminanceOf(picture_, {face_.x, face_.y, face_.width, face_.height});
        Set(MeasureKind::sharpness, SharpnessOf(square), {kLeastSharpness, {}});
        LevelCounts counts;
        counts.Add(square);
        Set(MeasureKind::shadows, counts.PercentUpTo(kLostShadow), {{}, kMostShadows});
        Set(MeasureKind::highlights, counts.PercentFrom(kBurntOut), {{}, kMostHighlights});
    }

    void MeasureBackground() {
        const std::optional<Background> background = BackgroundOf(picture_, face_);
        if (!background) {
            Leave(MeasureKind::backgroundLevel, "no room beside the head");
            Leave(MeasureKind::backgroundSpread, "no room beside the head");
            return;
        }
        const BackgroundRule rule = document_ != nullptr ? document_->background : BackgroundRule::any;
        Band level;
        if (rule == BackgroundRule::plainLight) level.low = kLeastPlainLight;
        if (rule == BackgroundRule::white) level.low = kLeastWhite;
        Set(MeasureKind::backgroundLevel, background->level, level);
        Set(MeasureKind::backgroundSpread, background->spread,
            rule == BackgroundRule::any ? Band() : Band{{}, kMostSpread});
    }

    const Picture& picture_;
    const FaceBox& face_;
    const ImageSize size_;
    const Document* document_;
    const bool isPortrait_;
    Measures measures_;
};

} // namespace

Measures CheckFace(const Picture& picture, const FaceBox& face, std::optional<int32> faces, const Document* document) {
    return Checks(picture, face, document).All(faces);
}

} // namespace orvane::tools
