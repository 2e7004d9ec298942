#include "tools/orvane/report_join.h"

#include "tools/orvane/commands.h"
#include "tools/orvane/report_file.h"
#include "tools/support/csv.h"
#include "tools/support/json_members.h"
#include "tools/support/whole_file.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

namespace orvane::tools {
namespace {

struct Row {
    std::size_t number = 0;
    std::string input;
    std::string status;
    std::string bytes; ///< As it stands in its report.
};

bool SetNumber(const std::string& text, Row* row) {
    const char* end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, row->number);
    return code == std::errc() && stop == end && row->number > 0;
}

/// What a row tells of its photo, the more the greater.
int Worth(const Row& row) { return row.status == "portrait" ? 2 : row.status == "kept" ? 1 : 0; }

/// Takes the rows of all reports and keeps one a photo.
class Joiner {
public:
    void Add(Row row) {
        if (row.status == "portrait" && !made_.insert(row.input).second) repeated_.insert(row.input);
        std::string input = row.input;
        const auto [known, isNew] = rows_.emplace(std::move(input), row);
        if (!isNew && Worth(row) >= Worth(known->second)) known->second = std::move(row);
    }

    void Finish(JoinedReports* joined) {
        std::vector<const Row*> sorted;
        for (const auto& [input, row] : rows_) sorted.push_back(&row);
        std::sort(sorted.begin(), sorted.end(), [](const Row* a, const Row* b) {
            return a->number != b->number ? a->number < b->number : a->input < b->input;
        });
        std::set<std::size_t> numbers;
        for (const Row* row : sorted) {
            joined->content += row->bytes;
            numbers.insert(row->number);
            Count(row->status, joined);
        }
        joined->photos = sorted.size();
        joined->repeated = repeated_.size();
        if (!numbers.empty()) joined->missing = *numbers.rbegin() - numbers.size();
    }

private:
    static void Count(const std::string& status, JoinedReports* joined) {
        if (status == "portrait" || status == "kept") {
            ++joined->portraits;
        } else if (status == "face") {
            ++joined->faces;
        } else if (status == "no face") {
            ++joined->faceless;
        } else {
            ++joined->failed;
        }
    }

    std::map<std::string, Row> rows_; ///< By the photo's path.
    std::set<std::string> made_;
    std::set<std::string> repeated_;
};

bool AddCsv(const std::string& content, const std::string& name, std::string* header, Joiner* joiner,
            std::string* error) {
    std::size_t at = 0;
    std::vector<std::string> columns;
    if (!ReadCsvRecord(content, &at, &columns)) {
        *error = "'" + name + "' is no report";
        return false;
    }
    const std::string own = content.substr(0, at);
    const auto column = [&](const char* word) {
        return static_cast<std::size_t>(std::find(columns.begin(), columns.end(), word) - columns.begin());
    };
    const std::size_t number = column("number");
    const std::size_t input = column("input");
    const std::size_t status = column("status");
    if (std::max({number, input, status}) >= columns.size()) {
        *error = "'" + name + "' is no report";
        return false;
    }
    if (header->empty()) *header = own;
    if (*header != own) {
        *error = "'" + name + "' has other columns than the first report";
        return false;
    }
    std::vector<std::string> fields;
    for (std::size_t start = at; ReadCsvRecord(content, &at, &fields); start = at) {
        Row row;
        if (fields.size() != columns.size() || !SetNumber(fields[number], &row)) {
            *error = "'" + name + "' has a damaged row";
            return false;
        }
        row.input = fields[input];
        row.status = fields[status];
        row.bytes = content.substr(start, at - start);
        joiner->Add(std::move(row));
    }
    return true;
}

bool AddLines(const std::string& content, const std::string& name, Joiner* joiner, std::string* error) {
    std::size_t at = 0;
    for (std::size_t end = content.find('\n'); end != std::string::npos; end = content.find('\n', at)) {
        Row row;
        row.bytes = content.substr(at, end + 1 - at);
        const auto members = JsonMembers(content.substr(at, end - at));
        if (!members || !members->count("number") || !members->count("input") || !members->count("status") ||
            !SetNumber(members->at("number"), &row)) {
            *error = "'" + name + "' has a damaged row";
            return false;
        }
        row.input = members->at("input"); // as it is written: one name is always written alike
        row.status = JsonValueText(members->at("status"));
        joiner->Add(std::move(row));
        at = end + 1;
    }
    return true;
}

std::string Summary(const JoinedReports& joined) {
    std::string text = std::to_string(joined.photos) + " photos: " + std::to_string(joined.portraits) + " portraits, ";
    if (joined.faces > 0) text += std::to_string(joined.faces) + " faces, ";
    text += std::to_string(joined.faceless) + " without a face, " + std::to_string(joined.failed) + " failed";
    if (joined.repeated > 0) text += ", " + std::to_string(joined.repeated) + " made more than once";
    return text + "\n";
}

} // namespace

bool JoinReports(const std::vector<std::string>& contents, const std::vector<std::string>& names, bool csv,
                 JoinedReports* joined, std::string* error) {
    *joined = JoinedReports();
    Joiner joiner;
    std::string header;
    for (std::size_t i = 0; i < contents.size(); ++i) {
        const bool good = csv ? AddCsv(contents[i], names[i], &header, &joiner, error)
                              : AddLines(contents[i], names[i], &joiner, error);
        if (!good) return false;
    }
    joined->content = header;
    joiner.Finish(joined);
    return true;
}

ExitCode RunJoin(const Options& options) {
    std::string error;
    std::vector<std::string> contents;
    const bool csv = !ReportHeader(options.output).empty();
    for (const std::string& name : options.photos) {
        std::string content;
        if (!IsReportName(name) || ReportHeader(name).empty() == csv) {
            PrintError("'" + name + "' is not named as '" + options.output + "' is, .csv or .jsonl");
            return kExitError;
        }
        if (!ReadWholeFile(name, &content, &error)) {
            PrintError("the report '" + name + "' " + error);
            return kExitError;
        }
        contents.push_back(std::move(content));
    }
    JoinedReports joined;
    if (!JoinReports(contents, options.photos, csv, &joined, &error)) {
        PrintError(error);
        return kExitError;
    }
    if (!WriteWholeFile(options.output, joined.content, options.force, &error)) {
        PrintError("the report '" + options.output + "' " + error);
        return kExitError;
    }
    if (joined.missing > 0) {
        PrintError(std::to_string(joined.missing) + " photos are in none of the reports");
    }
    return Print(Summary(joined)) && joined.missing == 0 ? kExitGood : kExitError;
}

} // namespace orvane::tools
