#include "capture/directshow/directshow_source.h"
#include "capture/directshow/stream_formats.h"

namespace orvane {

const DirectShowDevice* DirectShowSource::Device(int32 index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= devices_.size()) return nullptr;
    return &devices_[static_cast<std::size_t>(index)];
}

int32 DirectShowSource::EnumerateDevices() {
    devices_.clear();
    try {
        devices_ = ListDevices();
    } catch (...) { // memory is exhausted
    }
    return static_cast<int32>(devices_.size());
}

const wchar_t* DirectShowSource::Text(int32 index, DeviceText text) {
    const DirectShowDevice* const device = Device(index);
    if (device == nullptr) return nullptr;
    const std::optional<std::wstring>& value = text == DeviceText::friendlyName  ? device->friendlyName
                                               : text == DeviceText::description ? device->description
                                                                                 : device->devicePath;
    return value ? value->c_str() : nullptr;
}

int32 DirectShowSource::Formats(int32 index, VideoFormat* formats, int32 capacity) {
    const DirectShowDevice* const device = Device(index);
    if (device == nullptr || formats == nullptr) return 0;
    return ReadFormats(*device->moniker.Get(), formats, capacity);
}

bool DirectShowSource::Open(int32 index, ImageSize* size) {
    graph_.Close();
    const DirectShowDevice* const device = Device(index);
    return device != nullptr && size != nullptr && graph_.Open(*device->moniker.Get(), *size);
}

bool DirectShowSource::ConfigureWindow(std::intptr_t owner, FrameSink& sink) {
    return graph_.ConfigureWindow(static_cast<OAHWND>(owner), sink);
}

} // namespace orvane
