// The cameras that GStreamer knows.
#pragma once

#include "capture/gstreamer/gst_handles.h"
#include "capture/video_source.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane {

struct CameraDevice {
    DeviceOwner device;
    CapsOwner caps; // null where the device tells none
    std::optional<std::wstring> friendlyName;
    std::optional<std::wstring> description;
    std::optional<std::wstring> devicePath;
    std::vector<VideoFormat> formats;
};

/// All cameras, in the system's order. None when looking for them takes too long: a driver may not answer.
std::vector<CameraDevice> FindCameras();

} // namespace orvane
