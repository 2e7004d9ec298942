// Where portraits lie on sheets of paper, in millimetres from a sheet's upper left corner. Portraits are never turned,
// scaled or cut; it is the sheet that lies upright or on its side.
#pragma once

#include "primitives/types.h"
#include "tools/print/lengths.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

struct SheetSettings {
    PaperSize paper{100, 150};
    double margin = 3;           ///< That printers leave white.
    double gap = 2;              ///< Between portraits.
    std::optional<int32> copies; ///< Of each portrait; none for as many as one sheet takes.
};

struct PlacedPortrait {
    std::size_t portrait = 0; ///< Among those that were given.
    double x = 0;
    double y = 0;
    PaperSize size;

    double Right() const { return x + size.width; }
    double Bottom() const { return y + size.height; }
};

using Sheet = std::vector<PlacedPortrait>;

struct SheetPlan {
    PaperSize paper; ///< Turned as the sheets lie.
    std::vector<Sheet> sheets;
};

/// Rows of portraits, the highest first, in the middle of each sheet. Of the two directions of the paper the one that
/// needs fewer sheets or, without a number of copies, takes more of them; upright as given where it makes no
/// difference. None where a portrait is larger than what the margins leave; then `*tooLarge` tells which.
std::optional<SheetPlan> PlanSheets(const std::vector<PaperSize>& portraits, const SheetSettings& settings,
                                    std::size_t* tooLarge);

} // namespace orvane::tools
