// The pictures of the cameras for tests.
#pragma once

#include "tests/capture/gstreamer/test_cameras.h"

#include <gst/video/video.h>

namespace orvane::test {

/// Draws a frame into a buffer of a packed RGB form.
/// @param portrait the moving portrait, else the pattern
/// @param number of the frame
bool DrawFrame(GstBuffer* buffer, const GstVideoInfo& info, bool portrait, int32 number);

/// The pattern as a JPEG picture, which the caller gives back; null where GStreamer's jpegenc is missing.
GstBuffer* PackedPattern(ImageSize size);

} // namespace orvane::test
