#include "tools/operator/camera_line.h"

#include "tools/support/json.h"
#include "tools/support/utf8.h"

#include <algorithm>
#include <cstdio>

namespace orvane::tools {
namespace {

/// Without zeros behind the point: 30, 29.97, 7.5.
std::string RateText(int32 framesIn1000s) {
    char text[16];
    std::snprintf(text, sizeof text, "%d.%03d", framesIn1000s / 1000, framesIn1000s % 1000);
    std::string rate = text;
    rate.erase(rate.find_last_not_of('0') + 1);
    if (rate.back() == '.') rate.pop_back();
    return rate;
}

std::string FormatText(const CameraFormat& format) {
    std::string text = std::to_string(format.width) + "x" + std::to_string(format.height);
    if (format.framesIn1000s > 0) text += ' ' + RateText(format.framesIn1000s) + "/s";
    return format.pixels.empty() ? text : text + ' ' + format.pixels;
}

std::string FormatsText(const Camera& camera) {
    constexpr std::size_t kShown = 3;
    std::vector<std::string> different;
    for (const CameraFormat& format : camera.formats) {
        std::string text = FormatText(format);
        if (std::find(different.begin(), different.end(), text) == different.end())
            different.push_back(std::move(text));
    }
    if (different.empty()) return "(tells no formats)";
    std::string line;
    for (std::size_t i = 0; i < std::min(kShown, different.size()); ++i) line += (i == 0 ? "" : ", ") + different[i];
    if (different.size() > kShown) line += ", ... " + std::to_string(different.size() - kShown) + " more";
    return line;
}

JsonObject FormatJson(const CameraFormat& format) {
    JsonObject object;
    object.Integer("width", format.width).Integer("height", format.height);
    if (format.framesIn1000s > 0) {
        object.Decimal("framesPerSecond", format.framesIn1000s / 1000.0);
    } else {
        object.Null("framesPerSecond");
    }
    return object.Text("pixels", format.pixels);
}

} // namespace

std::string CameraLine(const Camera& camera) {
    std::string name = "(no name)";
    for (const auto* text : {&camera.name, &camera.description, &camera.path}) {
        if (!*text) continue;
        name = OneLine(**text);
        break;
    }
    return std::to_string(camera.index) + "  " + name + "  " + FormatsText(camera);
}

std::string CameraJson(const Camera& camera) {
    JsonObject line;
    line.Integer("index", camera.index);
    const std::pair<const char*, const std::optional<std::string>*> texts[] = {
        {"name", &camera.name}, {"description", &camera.description}, {"path", &camera.path}};
    for (const auto& [key, text] : texts) {
        if (*text) {
            line.Text(key, **text);
        } else {
            line.Null(key);
        }
    }
    std::vector<JsonObject> formats;
    for (const CameraFormat& format : camera.formats) formats.push_back(FormatJson(format));
    return line.Objects("formats", formats).Line();
}

} // namespace orvane::tools
