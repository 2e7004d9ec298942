#include "tools/orvane/framed_portrait.h"

#include "detect/candidates.h"
#include "image/result_codes.h"
#include "image/session_images.h"
#include "primitives/sine_cosine.h"
#include "session/deferred_picture.h"
#include "session/session_state.h"
#include "session/stage_clock.h"
#include "tools/documents/cut_frame.h"
#include "tools/documents/frame.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvane::tools {
namespace {

/// What stays around a frame that is found after the turn, of its sides: it may have to move.
constexpr double kMargin = 0.1;
/// Near half of a quarter turn next to nothing would be left between the corners.
constexpr double kLeastCosine = 0.2;
/// A frame with fewer pixels a side shows nobody.
constexpr double kLeastSide = 8;
/// Around a frame that is known, for the last cut.
constexpr double kRim = 2;

/// The detector's square in pixels of the work picture.
PlaneRect WorkSquare(const FaceBox& face, ImageSize photo, ImageSize work) {
    const double x = static_cast<double>(work.width) / photo.width;
    const double y = static_cast<double>(work.height) / photo.height;
    return {face.x * x, face.y * y, face.width * x, face.height * y};
}

/// What must be cut out so that a turn by `angle` leaves `needed` of it, about the same middle.
PlaneRect BeforeTurn(const PlaneRect& needed, int32 angle) {
    const int32 quarter = (angle + 45) / 90;
    const double rest = std::abs(angle - quarter * 90) * std::numbers::pi / 180;
    const double across = quarter % 2 == 0 ? needed.width : needed.height;
    const double along = quarter % 2 == 0 ? needed.height : needed.width;
    const double turned = std::max(SineCosineOf(2 * rest).cosine, kLeastCosine);
    const auto [sine, cosine] = SineCosineOf(rest);
    const double width = (across * cosine + along * sine) / turned;
    const double height = (along * cosine + across * sine) / turned;
    return {needed.left + (needed.width - width) / 2, needed.top + (needed.height - height) / 2, width, height};
}

/// The frame with a margin, spread to the same length on either side of the face's middle, about which it will turn.
PlaneRect AroundFace(const PlaneRect& frame, const PlaneRect& square) {
    const double x = square.left + square.width / 2;
    const double y = square.top + square.height / 2;
    const double across = std::max(x - frame.left, frame.Right() - x) + kMargin * frame.width;
    const double down = std::max(y - frame.top, frame.Bottom() - y) + kMargin * frame.height;
    return {x - across, y - down, 2 * across, 2 * down};
}

/// Whole pixels of the picture that hold `rect`, in stored rows.
ImageRect PartOf(const PlaneRect& rect, ImageSize picture) {
    const auto within = [](double value, int32 limit) {
        return static_cast<int32>(std::clamp(std::floor(value), 0.0, static_cast<double>(limit)));
    };
    const int32 left = within(rect.left, picture.width);
    const int32 right = within(rect.Right() + 1, picture.width);
    const int32 top = within(rect.top, picture.height);
    const int32 bottom = within(rect.Bottom() + 1, picture.height);
    return {left, picture.height - bottom, right - left, bottom - top};
}

/// Where a square of the part lies after the part was turned about its middle and cut.
PlaneRect Turned(const PlaneRect& square, const ImageRect& part, ImageSize result, int32 angle) {
    const auto [sine, cosine] = SineCosineOf(angle * std::numbers::pi / 180);
    const double x = square.left + square.width / 2 - part.width / 2.0;
    const double y = square.top + square.height / 2 - part.height / 2.0;
    const double toX = result.width / 2.0 + x * cosine - y * sine;
    const double toY = result.height / 2.0 + x * sine + y * cosine;
    return {toX - square.width / 2, toY - square.height / 2, square.width, square.height};
}

/// What becomes of a frame that reaches beyond `bounds`. False when there is no portrait.
bool Settle(const FrameWish& wish, const PlaneRect& bounds, FramePlan* plan, PhotoReport* report) {
    if (std::min(plan->frame.width, plan->frame.height) < kLeastSide) {
        report->error = "the frame has next to no pixels; a greater --crop-ratio may help";
        return false;
    }
    if (plan->fits) return true;
    const std::string lacks = "the photo lacks " + ShortageText(plan->missing);
    if (wish.fill.kind != Fill::Kind::none) {
        report->warning = lacks + ", which is filled in";
    } else if (!wish.isStrict) {
        plan->frame = MovedInside(plan->frame, bounds);
        report->warning = lacks + "; the portrait is made of what there is";
    } else {
        report->error =
            lacks + " of the frame" + (wish.name.empty() ? "" : " for '" + wish.name + "'") + "; --fill fills it in";
        return false;
    }
    return true;
}

/// Puts a part of the promised work picture in the place of the whole, and the face with it.
int32 TakePart(const ImageRect& part) {
    ImageBuffer pixels;
    if (const int32 status = g_deferredPicture.MakePart(part, pixels)) return status;
    g_sourceImage.Swap(pixels);
    g_faceRecord.centreX -= part.x;
    g_faceRecord.centreY -= part.y;
    return kSuccess;
}

PlaneRect Bounds(ImageSize size) { return {0, 0, static_cast<double>(size.width), static_cast<double>(size.height)}; }

void Move(PlaneRect* rect, double x, double y) {
    rect->left += x;
    rect->top += y;
}

} // namespace

int32 MakeFramedPortrait(const Options& options, ImageSize photo, Picture* portrait, PhotoReport* report,
                         const SlotObserver& observer) {
    const FrameWish& wish = *options.frame;
    const ImageSize work = g_sourceImage.Size();
    const int32 angle = options.actions.rotation ? options.rotation : 0;
    PlaneRect square = WorkSquare(*report->face, photo, work);

    // A turn decides what is left of the photo; without one the frame is known before any pixel is made.
    FramePlan plan = angle == 0 ? FrameWithin(wish, square, Bounds(work)) : PlainFrame(wish, square);
    if (angle == 0 && !Settle(wish, Bounds(work), &plan, report)) return kSuccess;
    PlaneRect needed = plan.frame;
    if (angle != 0) {
        needed = BeforeTurn(AroundFace(plan.frame, square), angle);
    } else {
        needed = {needed.left - kRim, needed.top - kRim, needed.width + 2 * kRim, needed.height + 2 * kRim};
    }
    const ImageRect part = PartOf(needed, work);
    double milliseconds = 0;
    {
        const StageClock clock(milliseconds);
        if (TakePart(part) != kSuccess) return kOutOfMemory;
    }
    report->milliseconds.crop = milliseconds;
    if (observer) observer(kSlotCrop, g_sourceImage);

    const StageClock clock(g_stageTimes.output);
    g_actionEnabled[kSlotCrop] = 0; // done
    g_actionEnabled[kSlotOutputScaling] = 0;
    if (RunActionPipeline(g_dialog->m_tolerance, angle, Snapshots::leftOut, observer) != kSuccess) {
        report->error = kCorrectionFailed;
        return kSuccess;
    }
    const double top = work.height - part.y - part.height;
    Move(&square, -part.x, -top);
    if (angle == 0) {
        Move(&plan.frame, -part.x, -top);
    } else {
        square = Turned(square, part, g_workImage.Size(), angle);
        plan = FrameWithin(wish, square, Bounds(g_workImage.Size()));
        if (!Settle(wish, Bounds(g_workImage.Size()), &plan, report)) return kSuccess;
    }
    const PictureRows rows{g_workImage.data, g_workImage.width, g_workImage.height, g_workImage.Step()};
    if (!CutFrame(rows, plan.frame, PixelsOf(wish.width, wish.resolution), PixelsOf(wish.height, wish.resolution),
                  wish.fill, portrait)) {
        *portrait = Picture();
        return kOutOfMemory;
    }
    if (observer) {
        ImageBuffer shown;
        shown.Borrow(portrait->pixels.data(), portrait->width, portrait->height, 3);
        observer(kSlotOutputScaling, shown);
    }
    return kSuccess;
}

} // namespace orvane::tools
