#include "tools/orvane/report.h"

#include "image/result_codes.h"
#include "tools/orvane/findings_text.h"
#include "tools/support/status_text.h"
#include "tools/support/utf8.h"

#include <cstdio>

namespace orvane::tools {
namespace {

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

/// One line a group, in the detector's order.
std::string GroupsText(const PhotoReport& report) {
    std::string text;
    for (const FaceGroup& group : report.groups) {
        if (!text.empty()) text += "\n";
        text += OneLine(report.photo) + ": " + std::to_string(group.hits) + (group.hits == 1 ? " hit" : " hits") +
                " at " + FaceText(group.mean);
        text += group.face == 0 ? ", too few" : ", face " + std::to_string(group.face);
        if (group.chosen) text += ", taken";
    }
    return text;
}

bool IsOutOfBand(const PhotoReport& report) { return report.measures && !AreInBand(*report.measures); }

} // namespace

std::string FaceText(const FaceBox& face) {
    return std::to_string(face.x) + "," + std::to_string(face.y) + ", " + std::to_string(face.width) + "x" +
           std::to_string(face.height);
}

std::string OutOfBandText(const PhotoReport& report) {
    if (!IsOutOfBand(report)) return "";
    return OneLine(report.photo) + ": face at " + FaceText(*report.face) + MeasuresText(*report.measures, true);
}

void AddSize(const PhotoReport& report, JsonObject* line) {
    if (report.width > 0) {
        line->Integer("width", report.width).Integer("height", report.height);
    } else {
        line->Null("width").Null("height");
    }
}

void AddFace(const PhotoReport& report, JsonObject* line) {
    if (!report.face) {
        line->Null("face");
        return;
    }
    line->Object("face", JsonOf(*report.face));
}

void AddTimes(const PhotoReport& report, JsonObject* line) {
    JsonObject times;
    for (const Stage& stage : kStages) {
        if (const std::optional<double>& value = report.milliseconds.*stage.value) times.Decimal(stage.name, *value);
    }
    line->Object("milliseconds", times);
}

std::string JsonLine(const PhotoReport& report) {
    JsonObject line;
    line.Text("photo", report.photo);
    AddSize(report, &line);
    if (report.status) {
        line.Integer("status", *report.status);
    } else {
        line.Null("status");
    }
    AddFace(report, &line);
    if (!report.output.empty()) line.Text("output", report.output);
    if (!report.document.empty()) line.Text("document", report.document);
    if (report.kept) line.Flag("kept", true);
    if (!report.error.empty()) line.Text("error", report.error);
    if (!report.warning.empty()) line.Text("warning", report.warning);
    AddFindings(report, &line);
    AddTimes(report, &line);
    return line.Line();
}

std::string TextLine(const PhotoReport& report) {
    if (!report.error.empty()) return "";
    if (!report.face) return GroupsText(report);
    std::string line = OneLine(report.photo) + ": face at " + FaceText(*report.face);
    if (report.measures) return line + MeasuresText(*report.measures, false);
    if (!report.output.empty()) line += ", portrait " + OneLine(report.output);
    if (report.kept) return line + ", kept from an earlier run";
    line += ", " + TimesText(report.milliseconds);
    const std::string groups = GroupsText(report);
    return groups.empty() ? line : line + "\n" + groups;
}

std::string ErrorLine(const PhotoReport& report) {
    if (!report.error.empty()) return OneLine(report.photo) + ": " + OneLine(report.error);
    return report.status == kNoFace ? OneLine(report.photo) + ": " + StatusText(kNoFace) : "";
}

std::string WarningLine(const PhotoReport& report) {
    return report.warning.empty() ? "" : OneLine(report.photo) + ": warning: " + OneLine(report.warning);
}

void AddWarning(const std::string& warning, PhotoReport* report) {
    if (!warning.empty() && !report->warning.empty()) report->warning += "; ";
    report->warning += warning;
}

const char* Outcome(const PhotoReport& report) {
    if (!report.error.empty()) return "failed";
    if (report.status == kNoFace) return "no face";
    if (report.kept) return "kept";
    return report.output.empty() ? "face" : "portrait";
}

ExitCode Worse(ExitCode before, const PhotoReport& report) {
    if (before == kExitError || !report.error.empty()) return kExitError;
    if (before == kExitNoFace || report.status == kNoFace) return kExitNoFace;
    return IsOutOfBand(report) ? kExitOutOfBand : before;
}

} // namespace orvane::tools
