// Groups and measures of a photo in words, as JSON and as fields of a report.
#pragma once

#include "tools/orvane/report.h"
#include "tools/support/csv.h"

#include <string>

namespace orvane::tools {

JsonObject JsonOf(const FaceBox& face);

/// Adds `groups`, `verdict` and `measures`, where the report has them.
void AddFindings(const PhotoReport& report, JsonObject* line);

/// One line a measure, each with a line's end in front: what it is, value, verdict and band. Or those alone that are
/// not in their bands.
std::string MeasuresText(const Measures& measures, bool outOfBandAlone);

/// "sharpness in the face low, burnt out in the face high"; empty where all are in their bands.
std::string VerdictsText(const Measures& measures);

/// The names of the columns, two a measure; and what stands in them, nothing for a value that was not measured.
void AddMeasureNames(CsvRecord* header);
void AddMeasureFields(const PhotoReport& report, CsvRecord* row);

} // namespace orvane::tools
