// The list of a device's forms, for whoever wants to show it.
#pragma once

#include "capture/video_source.h"

#include <gst/gst.h>

#include <vector>

namespace orvane {

/// The forms in the device's order, each once: one for each kind of pixels of a form with a size. Of forms that
/// differ in their frame rate alone the fastest stays.
std::vector<VideoFormat> FormatsOf(const GstCaps* caps);

} // namespace orvane
