// Reports of several runs as one: those of the shards of a run, or of the attempts at one.
#pragma once

#include "tools/orvane/options.h"
#include "tools/orvane/report.h"

#include <cstddef>
#include <string>
#include <vector>

namespace orvane::tools {

struct JoinedReports {
    std::string content; ///< Of the report of all.
    std::size_t photos = 0;
    std::size_t portraits = 0; ///< Made or kept.
    std::size_t faces = 0;     ///< Found where no portrait was asked for.
    std::size_t faceless = 0;
    std::size_t failed = 0;
    std::size_t missing = 0;  ///< Numbers below the highest that no report has.
    std::size_t repeated = 0; ///< Photos of which more than one report tells that it made the portrait.
};

/// Joins the contents of reports, which are all of the kind that `csv` tells, in the order of the photos' numbers. Of a
/// photo that several tell, the row that tells most counts: a portrait that was made, one that was kept, anything else;
/// of equals the last one. A last row that was cut off is left out. False gives `*error` one line, which names the
/// report by its place.
bool JoinReports(const std::vector<std::string>& contents, const std::vector<std::string>& names, bool csv,
                 JoinedReports* joined, std::string* error);

ExitCode RunJoin(const Options& options);

} // namespace orvane::tools
