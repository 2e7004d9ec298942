// The cameras of Windows. The thread that uses a source must have been made ready for component interfaces.
#pragma once

#include "capture/directshow/capture_graph.h"
#include "capture/directshow/device_list.h"
#include "capture/video_source.h"

namespace orvane {

class DirectShowSource final : public VideoSource {
public:
    DirectShowSource() = default;
    ~DirectShowSource() override = default;
    DirectShowSource(const DirectShowSource&) = delete;
    DirectShowSource& operator=(const DirectShowSource&) = delete;

    int32 EnumerateDevices() override;
    const wchar_t* Text(int32 index, DeviceText text) override;
    int32 Formats(int32 index, VideoFormat* formats, int32 capacity) override;

    bool Open(int32 index, ImageSize* size) override;
    bool ConfigureWindow(std::intptr_t owner, FrameSink& sink) override;
    bool Run() override { return graph_.Run(); }
    bool Pause() override { return graph_.Pause(); }
    void Close() override { graph_.Close(); }

private:
    /// Null for an index beyond the list.
    const DirectShowDevice* Device(int32 index) const;

    std::vector<DirectShowDevice> devices_;
    CaptureGraph graph_; // of the open device
};

} // namespace orvane
