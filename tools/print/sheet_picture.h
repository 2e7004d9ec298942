// A sheet as pixels.
#pragma once

#include "tools/print/printed_portrait.h"
#include "tools/print/sheet_plan.h"

#include <string>
#include <vector>

namespace orvane::tools {

/// The size that a portrait has in whole pixels of a sheet: for the plan of one, so that neither gaps nor sums of sizes
/// fall between pixels.
PaperSize InWholePixels(const PaperSize& size, int32 dpi);
double InWholePixels(double length, int32 dpi);

/// Draws a sheet on white paper; portraits whose pixels are not those of the sheet are scaled, by the mean of boxes
/// downwards and by cubic curves upwards. False gives `*error` one line. Throws std::bad_alloc.
bool DrawSheet(const Sheet& sheet, const PaperSize& paper, const std::vector<PrintedPortrait>& portraits, int32 dpi,
               bool cutMarks, Picture* picture, std::string* error);

} // namespace orvane::tools
