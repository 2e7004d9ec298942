// The video system over GStreamer.
#pragma once

#include "capture/video_source.h"

namespace orvane {

/// Always the same object.
VideoSystem& GstVideo();

} // namespace orvane
