// Which of its forms a device is asked for.
#pragma once

#include "capture/gstreamer/gst_handles.h"
#include "primitives/types.h"

#include <optional>

namespace orvane {

/// A form that was chosen.
struct CameraForm {
    CapsOwner caps; // what the device is asked for: one form of one size
    ImageSize size; // of the frames that the sink gets
    bool packed;    // the device's frames need a decoder
};

/// Chooses among a device's caps. None when no form can be shown.
std::optional<CameraForm> ChooseForm(const GstCaps* caps);

} // namespace orvane
