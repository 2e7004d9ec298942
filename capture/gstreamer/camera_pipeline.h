// The elements between a device and the gate: the device, a decoder where its frames come packed, conversion to
// blue, green, red, and scaling, so that a device that changes its size goes on delivering the connected one.
#pragma once

#include "capture/gstreamer/camera_state.h"
#include "capture/gstreamer/form_choice.h"
#include "capture/gstreamer/frame_gate.h"

namespace orvane {

/// What the streaming threads of a pipeline reach.
struct CameraLink {
    explicit CameraLink(ImageSize size) : gate(size) {}

    FrameGate gate;
    CameraState state;
};

/// A pipeline that does nothing yet; null where the device or an element of it can't be had. `link` outlives it.
ElementOwner BuildPipeline(GstDevice* device, const CameraForm& form, CameraLink& link);

/// Stops a pipeline, however long that takes, and lets it go. Nothing calls the link afterwards.
void EndPipeline(ElementOwner pipeline);

} // namespace orvane
