// The forms in which a device can deliver.
#pragma once

#include "capture/directshow/com_holders.h"
#include "capture/video_source.h"

namespace orvane {

/// Writes up to `capacity` forms of a device's capture pin, or of its preview pin where it has no other; how many.
int32 ReadFormats(IMoniker& device, VideoFormat* formats, int32 capacity);

/// One form, from a type and what the device says of its ranges. False for what is no video.
bool ToVideoFormat(const AM_MEDIA_TYPE& type, const VIDEO_STREAM_CONFIG_CAPS& caps, VideoFormat& format);

} // namespace orvane
