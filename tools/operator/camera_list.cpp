#include "tools/operator/camera_list.h"

#include "tools/support/utf8.h"

#include <algorithm>
#include <iterator>

namespace orvane::tools {
namespace {

std::optional<std::string> TextOf(VideoSource& source, int32 index, DeviceText text) {
    const wchar_t* wide = source.Text(index, text);
    if (wide == nullptr || *wide == 0) return std::nullopt;
    return Utf8(wide);
}

/// The device's bytes as far as they are told; what can't be printed becomes '?'.
std::string PixelName(const VideoFormat& format) {
    std::string name(std::begin(format.pixels), std::find(std::begin(format.pixels), std::end(format.pixels), '\0'));
    for (char& c : name) {
        if (c < 0x20 || c > 0x7E) c = '?';
    }
    return name;
}

std::vector<CameraFormat> FormatsOf(VideoSource& source, int32 index) {
    // The source does not tell how many there are: room grows until some is left.
    constexpr int32 kRoom = 64, kMostRoom = 4096;
    std::vector<VideoFormat> told;
    int32 count = 0;
    for (int32 room = kRoom; room <= kMostRoom && count >= static_cast<int32>(told.size()); room *= 4) {
        told.assign(static_cast<std::size_t>(room), VideoFormat{});
        count = std::clamp(source.Formats(index, told.data(), room), 0, room);
    }
    told.resize(static_cast<std::size_t>(count));
    std::vector<CameraFormat> formats;
    formats.reserve(told.size());
    for (const VideoFormat& format : told) {
        formats.push_back({format.width, format.height, format.framesIn1000s, PixelName(format)});
    }
    return formats;
}

} // namespace

std::vector<Camera> ListCameras(VideoSource& source) {
    std::vector<Camera> cameras;
    const int32 count = source.EnumerateDevices();
    for (int32 index = 0; index < count; ++index) {
        Camera camera;
        camera.index = index;
        camera.name = TextOf(source, index, DeviceText::friendlyName);
        camera.description = TextOf(source, index, DeviceText::description);
        camera.path = TextOf(source, index, DeviceText::devicePath);
        camera.formats = FormatsOf(source, index);
        cameras.push_back(std::move(camera));
    }
    return cameras;
}

} // namespace orvane::tools
