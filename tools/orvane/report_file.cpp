#include "tools/orvane/report_file.h"

#include "tools/orvane/findings_text.h"
#include "tools/support/csv.h"
#include "tools/support/file_identity.h"
#include "tools/support/json.h"
#include "tools/support/utf8.h"
#include "tools/support/whole_file.h"

#include <cctype>
#include <cstdio>

namespace orvane::tools {
namespace {

bool EndsWith(const std::string& path, const std::string& extension) {
    if (path.size() <= extension.size()) return false;
    std::string end = path.substr(path.size() - extension.size());
    for (char& c : end) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return end == extension;
}

bool IsCsv(const std::string& path) { return EndsWith(path, ".csv"); }

std::string Milliseconds(const std::optional<double>& value) {
    if (!value) return "";
    char text[400];
    std::snprintf(text, sizeof text, "%.3f", *value);
    return text;
}

std::string CsvRow(std::size_t number, const PhotoReport& report, ReportKind kind) {
    CsvRecord row;
    row.Text(std::to_string(number)).Text(report.photo).Text(report.output).Text(Outcome(report));
    row.Text(report.status ? std::to_string(*report.status) : "");
    const bool read = report.width > 0;
    row.Text(read ? std::to_string(report.width) : "").Text(read ? std::to_string(report.height) : "");
    const FaceBox face = report.face.value_or(FaceBox());
    for (const int32 value : {face.x, face.y, face.width, face.height}) {
        row.Text(report.face ? std::to_string(value) : "");
    }
    for (const Stage& stage : kStages) row.Text(Milliseconds(report.milliseconds.*stage.value));
    row.Text(report.error).Text(report.warning).Text(report.document);
    if (kind == ReportKind::checks) AddMeasureFields(report, &row);
    return row.Line();
}

} // namespace

bool IsReportName(const std::string& path) { return IsCsv(path) || EndsWith(path, ".jsonl"); }

std::string ReportHeader(const std::string& path, ReportKind kind) {
    if (!IsCsv(path)) return "";
    CsvRecord header;
    for (const char* name : {"number", "input", "output", "status", "code", "width", "height", "face_x", "face_y",
                             "face_width", "face_height"}) {
        header.Text(name);
    }
    for (const Stage& stage : kStages) header.Text(std::string(stage.name) + "_ms");
    header.Text("error").Text("warning").Text("document");
    if (kind == ReportKind::checks) AddMeasureNames(&header);
    return header.Line();
}

std::string ReportRow(const std::string& path, std::size_t number, const PhotoReport& report, ReportKind kind) {
    if (IsCsv(path)) return CsvRow(number, report, kind);
    JsonObject row;
    row.Integer("number", static_cast<std::int64_t>(number)).Text("input", report.photo);
    row.Text("output", report.output).Text("status", Outcome(report));
    if (report.status) {
        row.Integer("code", *report.status);
    } else {
        row.Null("code");
    }
    AddSize(report, &row);
    AddFace(report, &row);
    AddTimes(report, &row);
    row.Text("error", report.error).Text("warning", report.warning).Text("document", report.document);
    AddFindings(report, &row);
    return row.Line() + "\n";
}

bool ReportFile::Open(const std::string& path, bool replace, std::string* error, ReportKind kind) {
    path_ = path;
    kind_ = kind;
    if (!replace && IsNameTaken(path)) {
        *error = "the report '" + path + "' " + kNameTaken;
        return false;
    }
    if (file_.Open(path, AppendFile::Start::empty, error) && file_.Append(ReportHeader(path, kind), error)) return true;
    *error = "the report '" + path + "' " + *error;
    return false;
}

bool ReportFile::Add(std::size_t number, const PhotoReport& report, std::string* error) {
    if (!file_.IsOpen() || file_.Append(ReportRow(path_, number, report, kind_), error)) return true;
    file_.Close();
    *error = "the report '" + path_ + "' " + *error;
    return false;
}

} // namespace orvane::tools
