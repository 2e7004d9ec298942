#include "capture/gstreamer/device_formats.h"

#include "capture/gstreamer/caps_values.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

namespace orvane {
namespace {

/// A name for pixels that come packed: "MJPG" for pictures one by one, else the end of the media type.
std::string PackedName(const std::string& media) {
    if (media == "image/jpeg") return "MJPG";
    std::string name = media.substr(media.find('/') + 1);
    if (name.rfind("x-", 0) == 0) name.erase(0, 2);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    return name;
}

std::vector<std::string> PixelNames(const GstStructure* form) {
    std::vector<std::string> names;
    for (const char* name : Texts(form, "format")) names.emplace_back(name);
    if (names.empty()) names.push_back(PackedName(gst_structure_get_name(form)));
    return names;
}

void Add(std::vector<VideoFormat>& formats, const VideoFormat& format) {
    const auto same = std::find_if(formats.begin(), formats.end(), [&](const VideoFormat& other) {
        return other.width == format.width && other.height == format.height &&
               std::strcmp(other.pixels, format.pixels) == 0;
    });
    if (same == formats.end()) {
        formats.push_back(format);
    } else {
        same->framesIn1000s = std::max(same->framesIn1000s, format.framesIn1000s);
    }
}

} // namespace

std::vector<VideoFormat> FormatsOf(const GstCaps* caps) {
    std::vector<VideoFormat> formats;
    if (caps == nullptr) return formats;
    for (guint i = 0; i < gst_caps_get_size(caps); ++i) {
        const GstStructure* form = gst_caps_get_structure(caps, i);
        VideoFormat format{GreatestNumber(form, "width"), GreatestNumber(form, "height"), GreatestRate(form), {}};
        if (format.width < 1 || format.height < 1) continue;
        for (const std::string& name : PixelNames(form)) {
            g_strlcpy(format.pixels, name.c_str(), sizeof format.pixels);
            Add(formats, format);
        }
    }
    return formats;
}

} // namespace orvane
