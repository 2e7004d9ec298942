#include "tools/orvane/findings_text.h"

#include <cstdio>
#include <vector>

namespace orvane::tools {
namespace {

std::string Fixed(double value, int decimals) {
    char text[400];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

std::string Padded(std::string text, std::size_t width) {
    if (text.size() < width) text.resize(width, ' ');
    return text;
}

/// "90 to 120", "at least 90", "at most 1"; empty for an open band.
std::string BandText(const Band& band, int decimals) {
    if (band.low && band.high) return Fixed(*band.low, decimals) + " to " + Fixed(*band.high, decimals);
    if (band.low) return "at least " + Fixed(*band.low, decimals);
    return band.high ? "at most " + Fixed(*band.high, decimals) : "";
}

std::string MeasureLine(const Measure& measure, const MeasureWords& words) {
    const Verdict verdict = measure.Judge();
    std::string value;
    if (measure.value) value = Fixed(*measure.value, words.decimals);
    if (measure.value && *words.unit != '\0') value += std::string(" ") + words.unit;
    std::string line = "\n  " + Padded(words.text, 28) + Padded(value, 22);
    if (verdict == Verdict::notMeasured) return line + "not measured: " + measure.reason;
    const std::string band = BandText(measure.band, words.decimals);
    return line + (band.empty() ? VerdictWord(verdict) : Padded(VerdictWord(verdict), 6) + band);
}

void AddEnd(const char* key, const std::optional<double>& value, JsonObject* object) {
    if (value) {
        object->Decimal(key, *value);
    } else {
        object->Null(key);
    }
}

JsonObject JsonOf(const Measure& measure, const MeasureWords& words) {
    JsonObject object;
    AddEnd("value", measure.value, &object);
    object.Text("unit", words.unit);
    AddEnd("low", measure.band.low, &object);
    AddEnd("high", measure.band.high, &object);
    object.Text("verdict", VerdictWord(measure.Judge()));
    if (!measure.reason.empty()) object.Text("reason", measure.reason);
    return object;
}

} // namespace

JsonObject JsonOf(const FaceBox& face) {
    JsonObject box;
    box.Integer("x", face.x).Integer("y", face.y).Integer("width", face.width).Integer("height", face.height);
    return box;
}

void AddFindings(const PhotoReport& report, JsonObject* line) {
    if (!report.groups.empty()) {
        std::vector<JsonObject> groups;
        for (const FaceGroup& group : report.groups) {
            JsonObject object = JsonOf(group.mean);
            object.Integer("hits", group.hits);
            if (group.face > 0) {
                object.Integer("face", group.face);
            } else {
                object.Null("face");
            }
            groups.push_back(object.Flag("taken", group.chosen));
        }
        line->Objects("groups", groups);
    }
    if (!report.measures) return;
    line->Text("verdict", AreInBand(*report.measures) ? "in band" : "out of band");
    JsonObject measures;
    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        measures.Object(kMeasureWords[i].name, JsonOf((*report.measures)[i], kMeasureWords[i]));
    }
    line->Object("measures", measures);
}

std::string MeasuresText(const Measures& measures, bool outOfBandAlone) {
    std::string text;
    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        const Verdict verdict = measures[i].Judge();
        if (outOfBandAlone && (verdict == Verdict::ok || verdict == Verdict::notMeasured)) continue;
        text += MeasureLine(measures[i], kMeasureWords[i]);
    }
    return text;
}

std::string VerdictsText(const Measures& measures) {
    std::string text;
    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        const Verdict verdict = measures[i].Judge();
        if (verdict == Verdict::ok || verdict == Verdict::notMeasured) continue;
        text += (text.empty() ? "" : ", ") + std::string(kMeasureWords[i].text) + " " + VerdictWord(verdict);
    }
    return text;
}

void AddMeasureNames(CsvRecord* header) {
    for (const MeasureWords& words : kMeasureWords) {
        header->Text(words.name).Text(std::string(words.name) + "_verdict");
    }
}

void AddMeasureFields(const PhotoReport& report, CsvRecord* row) {
    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        if (!report.measures) {
            row->Text("").Text("");
            continue;
        }
        const Measure& measure = (*report.measures)[i];
        row->Text(measure.value ? Fixed(*measure.value, 3) : "").Text(VerdictWord(measure.Judge()));
    }
}

} // namespace orvane::tools
