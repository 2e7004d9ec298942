// The seam's video source over GStreamer.
#pragma once

#include "capture/gstreamer/camera.h"
#include "capture/gstreamer/device_list.h"

namespace orvane {

class VideoSourceGst final : public VideoSource {
public:
    int32 EnumerateDevices() override;
    const wchar_t* Text(int32 index, DeviceText text) override;
    int32 Formats(int32 index, VideoFormat* formats, int32 capacity) override;
    bool Open(int32 index, ImageSize* size) override;
    bool ConfigureWindow(std::intptr_t owner, FrameSink& sink) override;
    bool Run() override;
    bool Pause() override;
    void Close() override;

private:
    const CameraDevice* Device(int32 index) const;

    std::vector<CameraDevice> m_devices;
    std::unique_ptr<Camera> m_camera; // the open one
};

} // namespace orvane
