// The chain passes pictures on by swapping: each slot reads the picture in hand and writes the scratch
// image, which then becomes the picture in hand. The first slot reads the source itself, so that the
// full-size picture is never copied only to be scaled down.
#include "session/pipeline.h"

#include "actions/action_settings.h"
#include "actions/background.h"
#include "actions/colour_correction.h"
#include "actions/face_crop.h"
#include "actions/output_scaling.h"
#include "actions/rotation.h"
#include "detect/candidates.h"
#include "image/result_codes.h"
#include "image/session_images.h"
#include "session/deferred_picture.h"
#include "session/session_state.h"

namespace orvane {
namespace {

constexpr int32 kDefaultTolerance = 50;

/// Turns the mask along, so that both keep the same shape; a mask without storage is forgotten. The action's
/// own answer goes by g_workImage, which may still be that of the run before: here the picture in hand counts.
int32 TurnPictureAndMask(const ImageBuffer& picture, ImageBuffer& scratch) {
    ActionRotate(picture, scratch, g_rotationAngle);
    ImageBuffer mask;
    ActionRotate(g_maskImage, mask, g_rotationAngle);
    g_maskImage.Swap(mask);
    return picture.data != nullptr ? kSuccess : kNoPicture;
}

bool HasFace() { return g_faceRecord.faceHeight != 0 && g_faceRecord.faceWidth != 0; }

/// Of a picture whose pixels are still to be made the crop makes those that it cuts out; whatever else reads it reads
/// the whole.
bool NeedsPixels() { return g_deferredPicture.IsPending() && !(g_actionEnabled[kSlotCrop] != 0 && HasFace()); }

int32 Crop(const ImageBuffer& picture, ImageBuffer& scratch) {
    if (&picture != &g_sourceImage || !g_deferredPicture.IsPending()) return ActionFaceCrop(picture, scratch);
    return g_deferredPicture.MakePart(FaceCropRect(picture.Size()), scratch);
}

/// The body of one slot. A slot that leaves `scratch` empty passes the picture on as it is.
int32 RunSlot(int32 slot, int32 tolerance, const ImageBuffer& picture, ImageBuffer& scratch) {
    switch (slot) {
    case kSlotCrop:
        return Crop(picture, scratch);
    case kSlotBackground:
        return ActionRemoveBackground(picture, scratch, g_maskImage, tolerance, g_originalWidth, g_originalHeight);
    case kSlotColour:
        if (&picture != &g_workImage) return ActionColourCorrection(picture, scratch);
        CorrectColours(g_workImage);
        return kSuccess;
    case kSlotRotation:
        return TurnPictureAndMask(picture, scratch);
    case kSlotOutputScaling:
        return ActionOutputScaling(picture, scratch);
    default:
        return kBadCall;
    }
}

} // namespace

int32 RunActionPipeline(int32 tolerance, int32 rotation, Snapshots snapshots, const SlotObserver& observer) {
    if (tolerance == -1) tolerance = kDefaultTolerance;
    if (rotation != -1) g_rotationAngle = rotation;
    g_maskImage.Fill(100.0);
    if (NeedsPixels() && g_deferredPicture.MakeWhole() != kSuccess) {
        g_workImage.CopyFrom(g_sourceImage); // as little as there is: a size
        return kOutOfMemory;
    }

    const ImageBuffer* picture = &g_sourceImage;
    ImageBuffer scratch;
    int32 status = kSuccess;
    for (int32 slot = 0; slot < kActionCount && status == kSuccess; ++slot) {
        if (g_actionEnabled[static_cast<std::size_t>(slot)] != 0) {
            // What an earlier run left in the work picture serves the first slot as storage.
            if (picture == &g_sourceImage) g_workImage.Swap(scratch);
            scratch.Retire();
            status = RunSlot(slot, tolerance, *picture, scratch);
            if (scratch.depth != 0) { // the slot made a picture, or tried to
                g_workImage.Swap(scratch);
                picture = &g_workImage;
            }
            if (observer && status == kSuccess) observer(slot, *picture);
        }
        if (slot == kSlotColour && snapshots == Snapshots::taken) {
            g_colourStageImage.CopyFrom(*picture);
            g_colourStageMask.CopyFrom(g_maskImage);
        } else if (slot == kSlotColour) {
            g_colourStageImage.Reset(); // nobody may turn the picture of a session before
            g_colourStageMask.Reset();
        }
    }
    if (picture == &g_sourceImage) g_workImage.CopyFrom(g_sourceImage);
    return status;
}

} // namespace orvane
