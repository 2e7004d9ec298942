// The report of a run: a file with one row a photo, which grows as the photos are finished. CSV as RFC 4180 has it, or
// one JSON object a line.
#pragma once

#include "tools/orvane/report.h"
#include "tools/support/append_file.h"

#include <cstddef>
#include <string>

namespace orvane::tools {

/// Whether the name ends with .csv or .jsonl, in capitals or not.
bool IsReportName(const std::string& path);

/// Whether rows have the values of a check and their verdicts.
enum class ReportKind { plain, checks };

/// Names of the columns, and of the members of the first level; later versions may add some at the end.
std::string ReportHeader(const std::string& path, ReportKind kind = ReportKind::plain);

/// The row of the photo that is the `number`th of all, counted from 1 whatever the shard.
std::string ReportRow(const std::string& path, std::size_t number, const PhotoReport& report,
                      ReportKind kind = ReportKind::plain);

class ReportFile {
public:
    /// Begins the file anew; one that exists only with `replace`. False gives `*error` one line.
    bool Open(const std::string& path, bool replace, std::string* error, ReportKind kind = ReportKind::plain);

    /// Writes a row, where a file was opened. The first failure gives `*error` one line; from then on nothing is
    /// written.
    bool Add(std::size_t number, const PhotoReport& report, std::string* error);

private:
    std::string path_;
    ReportKind kind_ = ReportKind::plain;
    AppendFile file_;
};

} // namespace orvane::tools
