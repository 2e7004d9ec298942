#include "tools/orvane/run_sheet.h"

#include "image/result_codes.h"
#include "tools/orvane/findings_text.h"
#include "tools/support/file_identity.h"
#include "tools/support/status_text.h"
#include "tools/support/whole_file.h"

#include <algorithm>
#include <utility>

namespace orvane::tools {

SheetEntry SheetEntryOf(const PhotoReport& report) {
    SheetEntry entry;
    entry.name = report.photo.substr(NameStart(report.photo));
    entry.picture = report.output;
    if (!report.error.empty() || report.status == kNoFace) {
        entry.rank = SheetRank::failed;
        entry.verdict = report.error.empty() ? StatusText(kNoFace) : report.error;
        // A worker read it whole, so this process can do so.
        if (report.width > 0) entry.picture = report.photo;
        return entry;
    }
    entry.verdict = report.kept ? "kept from an earlier run" : "portrait";
    std::string remarks = report.measures ? VerdictsText(*report.measures) : "";
    if (!report.warning.empty()) remarks += (remarks.empty() ? "" : ", ") + report.warning;
    if (remarks.empty()) return entry;
    entry.rank = SheetRank::worthALook;
    entry.verdict = remarks;
    return entry;
}

bool RunSheet::Open(const Options& options, const PhotoSelection& selection, std::string* error) {
    path_ = options.sheet;
    replace_ = options.force || options.resume;
    if (path_.empty()) return true;
    for (const std::string& file : SheetFiles(path_, selection.photos.size())) {
        const std::optional<FileIdentity> identity = IdentifyFile(file);
        const bool isPhoto = identity && std::any_of(selection.photos.begin(), selection.photos.end(),
                                                     [&](const auto& p) { return IdentifyFile(p.path) == identity; });
        const bool isOutput = std::any_of(selection.photos.begin(), selection.photos.end(),
                                          [&](const auto& p) { return NameKey(p.output.path) == NameKey(file); });
        if (isPhoto || isOutput || file == options.report) {
            *error = "the sheet '" + file + "' is one of the run's other files";
            return false;
        }
        if (!replace_ && IsNameTaken(file)) {
            *error = "the sheet '" + file + "' " + kNameTaken;
            return false;
        }
    }
    if (CanWriteWholeFile(path_, replace_, error)) return true;
    *error = "the sheet '" + path_ + "' " + *error;
    return false;
}

void RunSheet::Add(const PhotoReport& report) {
    if (!path_.empty()) entries_.push_back(SheetEntryOf(report));
}

bool RunSheet::Write(std::string* error) {
    return path_.empty() || WriteContactSheet(path_, std::move(entries_), replace_, error);
}

} // namespace orvane::tools
