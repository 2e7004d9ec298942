#include "capture/gstreamer/video_source_gst.h"

#include <algorithm>

namespace orvane {
namespace {

/// What is thrown can only be exhausted memory, or a thread that the system does not have.
template <typename Result, typename Work>
Result Guarded(Result otherwise, Work work) {
    try {
        return work();
    } catch (...) {
        return otherwise;
    }
}

} // namespace

const CameraDevice* VideoSourceGst::Device(int32 index) const {
    const bool known = index >= 0 && static_cast<std::size_t>(index) < m_devices.size();
    return known ? &m_devices[static_cast<std::size_t>(index)] : nullptr;
}

int32 VideoSourceGst::EnumerateDevices() {
    m_devices.clear();
    return Guarded(0, [this] {
        m_devices = FindCameras();
        return static_cast<int32>(m_devices.size());
    });
}

const wchar_t* VideoSourceGst::Text(int32 index, DeviceText text) {
    const CameraDevice* device = Device(index);
    if (device == nullptr) return nullptr;
    const auto& found = text == DeviceText::friendlyName  ? device->friendlyName
                        : text == DeviceText::description ? device->description
                                                          : device->devicePath;
    return found ? found->c_str() : nullptr;
}

int32 VideoSourceGst::Formats(int32 index, VideoFormat* formats, int32 capacity) {
    const CameraDevice* device = Device(index);
    if (device == nullptr || formats == nullptr || capacity < 1) return 0;
    const std::size_t count = std::min(device->formats.size(), static_cast<std::size_t>(capacity));
    std::copy_n(device->formats.begin(), count, formats);
    return static_cast<int32>(count);
}

bool VideoSourceGst::Open(int32 index, ImageSize* size) {
    Close();
    const CameraDevice* device = Device(index);
    if (device == nullptr) return false;
    return Guarded(false, [&] {
        std::optional<CameraForm> form = ChooseForm(device->caps.get());
        if (!form) return false;
        const ImageSize chosen = form->size;
        m_camera = Camera::Open(device->device.get(), std::move(*form));
        if (m_camera == nullptr) return false;
        if (size != nullptr) *size = chosen;
        return true;
    });
}

bool VideoSourceGst::ConfigureWindow(std::intptr_t /*owner*/, FrameSink& sink) {
    if (m_camera == nullptr) return false;
    m_camera->SendTo(sink); // there is no window to hide
    return true;
}

bool VideoSourceGst::Run() {
    return m_camera != nullptr && Guarded(false, [this] { return m_camera->Run(); });
}

bool VideoSourceGst::Pause() {
    if (m_camera == nullptr) return false;
    return Guarded(false, [this] {
        m_camera->Pause();
        return true;
    });
}

void VideoSourceGst::Close() { m_camera.reset(); }

} // namespace orvane
