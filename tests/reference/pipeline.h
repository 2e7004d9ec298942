// The chain of corrections once more, with a whole-picture copy for every hand-over.
#pragma once

#include "image/session_images.h"
#include "session/session_state.h"
#include "tests/reference/actions.h"
#include "tests/reference/background.h"
#include "tests/reference/colour_correction.h"
#include "tests/reference/rotation.h"
#include "tests/support/scene_image.h"

namespace orvane::test::reference {

/// The pictures and the size that a run works on.
struct PipelineState {
    ImageBuffer source, work, mask, colourStageImage, colourStageMask;
    ImageSize output;

    /// What the library holds at present.
    void TakePresent() {
        source.CopyFrom(g_sourceImage);
        work.CopyFrom(g_workImage);
        mask.CopyFrom(g_maskImage);
        colourStageImage.CopyFrom(g_colourStageImage);
        colourStageMask.CopyFrom(g_colourStageMask);
        output = {g_outputWidth, g_outputHeight};
    }

    /// A session without a window makes no pixel of the work picture that nobody reads: here it is made of the photo.
    void MakeSource(const Scene& photo) {
        if (source.data != nullptr) return;
        ImageSize size = source.Size();
        ImageBuffer picture;
        if (ToImage(photo, picture)) OutputScaling(picture, size, source);
    }
};

inline int32 BackgroundSlot(PipelineState& s, ImageBuffer& scratch, bool cropped, int32 tolerance) {
    FaceRecord face = g_faceRecord;
    if (face.faceWidth == 0 || face.faceHeight == 0) return kNoFace;
    if (cropped) {
        face.centreX = (s.work.width + 1) / 2;
        face.centreY = (s.work.height + 1) / 2;
    }
    std::string told;
    RemoveBackground(s.work, scratch, s.mask, tolerance, g_fillLevel, face, {g_originalWidth, g_originalHeight}, told);
    return kSuccess;
}

/// A run with the angle already settled.
inline int32 RunPipeline(PipelineState& s, const ActionFlags& enabled, int32 angle = 0, int32 tolerance = 50) {
    if (s.mask.data != nullptr) s.mask.Fill(100.0);
    s.work.CopyFrom(s.source);
    ImageBuffer scratch;
    scratch.CopyFrom(s.work);
    int32 status = 0;
    for (int32 slot = 0; slot < 6; ++slot) {
        if (enabled[static_cast<std::size_t>(slot)] != 0) {
            if (slot == 0) {
                status = FaceCrop(s.work, scratch);
            } else if (slot == 2) {
                CorrectColours(s.work, scratch);
            } else if (slot == 3) {
                status = s.work.data != nullptr ? 0 : -60;
                if (s.work.data != nullptr) TurnPicture(s.work, scratch, angle);
                ImageBuffer turned;
                if (s.mask.data != nullptr) TurnPicture(s.mask, turned, angle);
                s.mask.CopyFrom(turned);
            } else if (slot == 1) {
                status = BackgroundSlot(s, scratch, enabled[0] != 0, tolerance);
            } else if (slot == 4) {
                status = -10;
            } else {
                status = OutputScaling(s.work, s.output, scratch);
            }
            s.work.CopyFrom(scratch);
        }
        if (slot == 2) {
            s.colourStageImage.CopyFrom(s.work);
            s.colourStageMask.CopyFrom(s.mask);
        }
        if (status != 0) break;
    }
    return status;
}

} // namespace orvane::test::reference
