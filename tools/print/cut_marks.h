// Where to cut: short lines that go on from the edges of portraits.
#pragma once

#include "tools/print/sheet_plan.h"

#include <vector>

namespace orvane::tools {

/// A line as the rectangle that is black, in millimetres.
struct CutMark {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// Two at each corner of each portrait, 3 mm long or as far as they meet neither the next portrait nor the sheet's
/// edge; none lies on any portrait.
std::vector<CutMark> CutMarks(const Sheet& sheet, const PaperSize& paper);

} // namespace orvane::tools
