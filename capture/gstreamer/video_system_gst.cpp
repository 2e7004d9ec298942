#include "capture/gstreamer/video_system_gst.h"

#include "capture/gstreamer/video_source_gst.h"

#include <cstdio>
#include <new>

namespace orvane {
namespace {

/// Starts GStreamer where the host has not done so already; then it is left as it is.
bool StartToolkit() {
    GError* problem = nullptr;
    if (gst_init_check(nullptr, nullptr, &problem) != FALSE) return true;
    std::fprintf(stderr, "orvane: working without a camera: %s\n",
                 problem != nullptr ? problem->message : "GStreamer does not start");
    g_clear_error(&problem);
    return false;
}

class GstVideoSystem final : public VideoSystem {
public:
    VideoSource* CreateVideoSource() override {
        static const bool started = StartToolkit(); // once, whatever thread comes first
        return started ? new (std::nothrow) VideoSourceGst : nullptr;
    }
};

} // namespace

VideoSystem& GstVideo() {
    static GstVideoSystem system;
    return system;
}

} // namespace orvane
