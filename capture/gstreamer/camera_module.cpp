// The one function of orvane-camera.so. The library and its module come from one build; a module of another
// version is none.
#include "capture/gstreamer/video_system_gst.h"

extern "C" __attribute__((visibility("default"))) void* orvane_video_system(orvane::int32 version) {
    return version == orvane::kVideoSeamVersion ? &orvane::GstVideo() : nullptr;
}
