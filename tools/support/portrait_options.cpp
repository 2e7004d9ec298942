#include "tools/support/portrait_options.h"

#include "tools/support/picture.h"

#include <charconv>
#include <cmath>

namespace orvane::tools {
namespace {

template <typename T>
std::optional<T> Number(const std::string& text) {
    T value{};
    const char* end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value);
    if (code != std::errc() || stop != end) return std::nullopt;
    return value;
}

} // namespace

std::optional<int32> NumberWithin(const std::string& text, int32 least, int32 most) {
    const std::optional<int32> value = Number<int32>(text);
    if (!value || *value < least || *value > most) return std::nullopt;
    return value;
}

std::string Range(int32 least, int32 most) { return std::to_string(least) + " to " + std::to_string(most); }

bool SetSize(const std::string& text, PortraitSettings* settings, std::string* error) {
    const std::size_t cross = text.find('x');
    if (cross != std::string::npos) {
        const auto width = NumberWithin(text.substr(0, cross), kMinOutputSide, kMaxOutputSide);
        const auto height = NumberWithin(text.substr(cross + 1), kMinOutputSide, kMaxOutputSide);
        if (width && height && IsPictureSizeAllowed(*width, *height)) {
            settings->width = *width;
            settings->height = *height;
            return true;
        }
    }
    *error = "--size wants WIDTHxHEIGHT, each " + Range(kMinOutputSide, kMaxOutputSide) + " and at most " +
             std::to_string(kMaxPicturePixels) + " pixels in all, not '" + text + "'";
    return false;
}

bool SetCropRatio(const std::string& text, PortraitSettings* settings, std::string* error) {
    const std::optional<float> value = Number<float>(text);
    if (value && std::isfinite(*value) && *value > 0 && *value <= kMaxCropRatio) {
        settings->cropRatio = *value;
        return true;
    }
    *error = "--crop-ratio wants a number above 0, up to 10, not '" + text + "'";
    return false;
}

bool SetActions(const std::string& text, PortraitSettings* settings, std::string* error) {
    Actions actions{false, false, false, false};
    const std::string list = text == "none" ? "" : text + ",";
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t comma = list.find(',', at);
        const std::string name = list.substr(at, comma - at);
        at = comma + 1;
        if (name == "crop") {
            actions.crop = true;
        } else if (name == "background") {
            actions.background = true;
        } else if (name == "colour") {
            actions.colour = true;
        } else if (name == "rotation") {
            actions.rotation = true;
        } else {
            *error = "--actions knows crop, background, colour and rotation, or none, not '" + name + "'";
            return false;
        }
    }
    settings->actions = actions;
    return true;
}

bool HasAskedSize(int32 width, int32 height, const PortraitSettings& settings) {
    const int32 asked = settings.width / 4 * 4;
    return width >= asked && height >= settings.height && (width == asked || height == settings.height);
}

} // namespace orvane::tools
