#include "tools/orvane/corrections.h"

#include "tools/support/csv.h"
#include "tools/support/file_identity.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <optional>

namespace orvane::tools {
namespace {

std::string RowText(std::size_t row) { return "row " + std::to_string(row); }

/// What editors and spreadsheets do to such files: a mark in front, and a last line without its end.
std::string WithoutMarkAndWithEnd(const std::string& file) {
    constexpr const char* kMark = "\xEF\xBB\xBF";
    std::string content = file.compare(0, 3, kMark) == 0 ? file.substr(3) : file;
    if (!content.empty() && content.back() != '\n') content += '\n';
    return content;
}

/// Where the columns stand among those of the first record. False when one is missing.
bool FindColumns(const std::vector<std::string>& names, std::array<std::size_t, 5>* places) {
    for (std::size_t i = 0; i < places->size(); ++i) {
        const auto found = std::find(names.begin(), names.end(), kCorrectionColumns[i]);
        if (found == names.end()) return false;
        (*places)[i] = static_cast<std::size_t>(found - names.begin());
    }
    return true;
}

/// Photos by path, and by file once that is asked for.
class Photos {
public:
    explicit Photos(const std::vector<std::string>& paths) : paths_(paths) {
        for (std::size_t i = 0; i < paths.size(); ++i) byPath_[paths[i]].push_back(i);
    }

    /// Places of all that a name means.
    std::vector<std::size_t> Find(const std::string& name) {
        if (const auto known = byPath_.find(name); known != byPath_.end()) return known->second;
        const std::optional<FileIdentity> file = IdentifyFile(name);
        if (!file) return {};
        if (byFile_.empty()) {
            for (std::size_t i = 0; i < paths_.size(); ++i) {
                if (const auto own = IdentifyFile(paths_[i])) byFile_[*own].push_back(i);
            }
        }
        const auto known = byFile_.find(*file);
        return known != byFile_.end() ? known->second : std::vector<std::size_t>();
    }

private:
    const std::vector<std::string>& paths_;
    std::map<std::string, std::vector<std::size_t>> byPath_;
    std::map<FileIdentity, std::vector<std::size_t>> byFile_;
};

} // namespace

void ReadCorrections(const std::string& file, std::vector<Correction>* corrections, std::vector<std::string>* errors) {
    const std::string content = WithoutMarkAndWithEnd(file);
    std::size_t at = 0;
    std::vector<std::string> fields;
    std::array<std::size_t, 5> places{};
    if (!ReadCsvRecord(content, &at, &fields) || !FindColumns(fields, &places)) {
        errors->push_back("the first row does not name the columns photograph,x,y,width,height");
        return;
    }
    const std::size_t columns = fields.size();
    std::map<std::string, std::size_t> rows;
    std::size_t row = 1;
    while (at < content.size()) {
        ++row;
        if (!ReadCsvRecord(content, &at, &fields)) {
            errors->push_back(RowText(row) + " breaks off");
            return;
        }
        if (fields.size() == 1 && fields[0].empty()) continue;
        if (fields.size() != columns) {
            errors->push_back(RowText(row) + " has " + std::to_string(fields.size()) + " fields and not " +
                              std::to_string(columns));
            continue;
        }
        const std::string& photo = fields[places[0]];
        const auto face = FaceBoxOf(fields[places[1]], fields[places[2]], fields[places[3]], fields[places[4]]);
        if (photo.empty() || !face) {
            errors->push_back(RowText(row) + " has no photograph and rectangle in whole pixels");
            continue;
        }
        const auto [first, isNew] = rows.emplace(photo, row);
        if (isNew) {
            corrections->push_back({photo, *face, row});
        } else {
            errors->push_back(RowText(row) + " has the photograph of " + RowText(first->second) + ", '" + photo + "'");
        }
    }
}

std::vector<std::optional<FaceBox>> Correct(const std::vector<std::string>& selected,
                                            const std::vector<Correction>& corrections,
                                            std::vector<std::string>* strangers, std::vector<std::string>* errors) {
    std::vector<std::optional<FaceBox>> faces(selected.size());
    std::vector<std::size_t> rows(selected.size());
    Photos photos(selected);
    for (const Correction& correction : corrections) {
        const std::vector<std::size_t> found = photos.Find(correction.photo);
        if (found.empty()) {
            strangers->push_back(RowText(correction.row) + ": '" + correction.photo + "' is not among the photos");
            continue;
        }
        const auto taken = std::find_if(found.begin(), found.end(), [&](std::size_t i) { return rows[i] != 0; });
        if (taken != found.end()) {
            errors->push_back(RowText(correction.row) + " has the photograph of " + RowText(rows[*taken]) + ", '" +
                              correction.photo + "'");
            continue;
        }
        for (const std::size_t i : found) {
            faces[i] = correction.face;
            rows[i] = correction.row;
        }
    }
    return faces;
}

} // namespace orvane::tools
