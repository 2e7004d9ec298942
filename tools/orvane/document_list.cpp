#include "tools/orvane/document_list.h"

#include "tools/documents/documents.h"
#include "tools/orvane/commands.h"
#include "tools/support/json.h"

#include <algorithm>
#include <cstdio>

namespace orvane::tools {
namespace {

/// A length without needless digits.
std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

std::string BandText(const Band& band) {
    if (!band.low) return "at most " + Number(*band.high);
    if (!band.high) return "at least " + Number(*band.low);
    return *band.low == *band.high ? Number(*band.low) : Number(*band.low) + "-" + Number(*band.high);
}

const char* RuleName(BackgroundRule rule) {
    return rule == BackgroundRule::white ? "white" : rule == BackgroundRule::plainLight ? "plain light" : "any";
}

/// "uk-passport              35x45 mm, 413x531 px, head 29-34, plain light, no edits; United Kingdom, ..."
std::string Line(const Document& document) {
    std::string line = document.name;
    line.resize(std::max<std::size_t>(line.size() + 2, 26), ' ');
    line += Number(document.width) + "x" + Number(document.height) + " mm, ";
    line += std::to_string(PixelsOf(document.width, document.resolution)) + "x" +
            std::to_string(PixelsOf(document.height, document.resolution)) + " px";
    if (!document.head.IsOpen()) line += ", head " + BandText(document.head);
    if (!document.eyes.IsOpen()) line += ", eyes " + BandText(document.eyes);
    if (!document.above.IsOpen()) line += ", above " + BandText(document.above);
    if (document.background != BackgroundRule::any) line += std::string(", ") + RuleName(document.background);
    if (document.forbidsEdits) line += ", no edits";
    if (document.leastBytes) line += ", at least " + std::to_string(*document.leastBytes / 1024) + " KB";
    if (document.mostBytes) line += ", at most " + std::to_string(*document.mostBytes / 1000) + " KB";
    return line + "; " + document.title + "; read " + document.read + "\n";
}

void AddBand(const char* key, const Band& band, JsonObject* object) {
    if (band.IsOpen()) {
        object->Null(key);
        return;
    }
    JsonObject ends;
    if (band.low) ends.Decimal("from", *band.low);
    if (band.high) ends.Decimal("to", *band.high);
    object->Object(key, ends);
}

void AddBytes(const char* key, const std::optional<std::uint64_t>& bytes, JsonObject* object) {
    if (bytes) {
        object->Integer(key, static_cast<std::int64_t>(*bytes));
    } else {
        object->Null(key);
    }
}

JsonObject Json(const Document& document) {
    JsonObject object;
    object.Text("name", document.name).Text("title", document.title).Text("authority", document.authority);
    object.Text("source", document.source).Text("read", document.read);
    object.Decimal("width", document.width).Decimal("height", document.height);
    object.Decimal("resolution", document.resolution);
    object.Integer("pixelWidth", PixelsOf(document.width, document.resolution));
    object.Integer("pixelHeight", PixelsOf(document.height, document.resolution));
    AddBand("head", document.head, &object);
    if (document.headTop == HeadTop::unsaid) {
        object.Null("headTop");
    } else {
        object.Text("headTop", document.headTop == HeadTop::hair ? "hair" : "skull");
    }
    AddBand("eyes", document.eyes, &object);
    AddBand("above", document.above, &object);
    object.Text("background", RuleName(document.background)).Flag("forbidsEdits", document.forbidsEdits);
    AddBytes("leastBytes", document.leastBytes, &object);
    AddBytes("mostBytes", document.mostBytes, &object);
    std::string remarks;
    for (const std::string& remark : document.remarks) remarks += (remarks.empty() ? "" : " ") + remark;
    return object.Text("remarks", remarks);
}

} // namespace

ExitCode RunDocuments(const Options& options) {
    std::vector<Document> documents;
    std::string error;
    if (!LoadDocuments(options.photos.empty() ? OwnTablePath() : options.photos[0], &documents, &error)) {
        PrintError(error);
        return kExitError;
    }
    std::string text;
    for (const Document& document : documents) text += options.json ? Json(document).Line() + "\n" : Line(document);
    return Print(text) ? kExitGood : kExitError;
}

} // namespace orvane::tools
