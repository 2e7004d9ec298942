#include "tools/orvane/report.h"

#include "image/result_codes.h"
#include "tools/support/json.h"
#include "tools/support/status_text.h"
#include "tools/support/utf8.h"

#include <cstdio>

namespace orvane::tools {
namespace {

struct Stage {
    const char* name;
    std::optional<double> StageMilliseconds::*value;
};

constexpr Stage kStages[] = {{"decode", &StageMilliseconds::decode}, {"scale", &StageMilliseconds::scale},
                             {"detect", &StageMilliseconds::detect}, {"crop", &StageMilliseconds::crop},
                             {"output", &StageMilliseconds::output}, {"encode", &StageMilliseconds::encode}};

std::string Number(double value) {
    char text[400];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

/// "12.3 ms (decode 4.1, detect 8.2)"
std::string TimesText(const StageMilliseconds& times) {
    double sum = 0;
    std::string stages;
    for (const Stage& stage : kStages) {
        const std::optional<double>& value = times.*stage.value;
        if (!value) continue;
        sum += *value;
        stages += (stages.empty() ? "" : ", ") + std::string(stage.name) + " " + Number(*value);
    }
    return Number(sum) + " ms (" + stages + ")";
}

} // namespace

std::string JsonLine(const PhotoReport& report) {
    JsonObject line;
    line.Text("photo", report.photo);
    if (report.width > 0) {
        line.Integer("width", report.width).Integer("height", report.height);
    } else {
        line.Null("width").Null("height");
    }
    if (report.status) {
        line.Integer("status", *report.status);
    } else {
        line.Null("status");
    }
    if (report.face) {
        const FaceBox& face = *report.face;
        line.Object("face", JsonObject()
                                .Integer("x", face.x)
                                .Integer("y", face.y)
                                .Integer("width", face.width)
                                .Integer("height", face.height));
    } else {
        line.Null("face");
    }
    if (!report.output.empty()) line.Text("output", report.output);
    if (!report.error.empty()) line.Text("error", report.error);
    JsonObject times;
    for (const Stage& stage : kStages) {
        if (const std::optional<double>& value = report.milliseconds.*stage.value) times.Decimal(stage.name, *value);
    }
    return line.Object("milliseconds", times).Line();
}

std::string TextLine(const PhotoReport& report) {
    if (!report.error.empty() || !report.face) return "";
    const FaceBox& face = *report.face;
    std::string line = OneLine(report.photo) + ": face at " + std::to_string(face.x) + "," + std::to_string(face.y) +
                       ", " + std::to_string(face.width) + "x" + std::to_string(face.height);
    if (!report.output.empty()) line += ", portrait " + OneLine(report.output);
    return line + ", " + TimesText(report.milliseconds);
}

std::string ErrorLine(const PhotoReport& report) {
    if (!report.error.empty()) return OneLine(report.photo) + ": " + OneLine(report.error);
    return report.status == kNoFace ? OneLine(report.photo) + ": " + StatusText(kNoFace) : "";
}

ExitCode Worse(ExitCode before, const PhotoReport& report) {
    if (before == kExitError || !report.error.empty()) return kExitError;
    return report.status == kNoFace ? kExitNoFace : before;
}

} // namespace orvane::tools
