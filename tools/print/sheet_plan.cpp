#include "tools/print/sheet_plan.h"

#include <algorithm>
#include <numeric>

namespace orvane::tools {
namespace {

/// What margins may lose to portraits whose pixels come to a bit more than their millimetres.
constexpr double kSlack = 0.1;
constexpr double kRounding = 1e-6;

/// More copies than fit on any paper.
constexpr int32 kMostOnASheet = 4000;

PaperSize Room(const PaperSize& paper, double margin) {
    const auto side = [&](double length) { return std::min(length, length - 2 * margin + kSlack) + kRounding; };
    return {side(paper.width), side(paper.height)};
}

bool Fits(const PaperSize& portrait, const PaperSize& room) {
    return portrait.width <= room.width && portrait.height <= room.height;
}

/// Fills sheets of one direction row by row.
class Filler {
public:
    Filler(const PaperSize& paper, const SheetSettings& settings)
        : paper_(paper), gap_(settings.gap), room_(Room(paper, settings.margin)) {}

    void Add(std::size_t portrait, const PaperSize& size) {
        if (!IsInRow(size)) StartRow(size);
        sheets_.back().push_back({portrait, rowEnd_, rowTop_, size});
        rowEnd_ += size.width + gap_;
        width_ = std::max(width_, rowEnd_ - gap_);
    }

    std::vector<Sheet> Take() {
        if (!sheets_.empty()) MoveToMiddle();
        return std::move(sheets_);
    }

private:
    /// Portraits come from the highest to the lowest, so that a row has the height of its first one.
    bool IsInRow(const PaperSize& size) const { return !sheets_.empty() && rowEnd_ + size.width <= room_.width; }

    void StartRow(const PaperSize& size) {
        rowTop_ = sheets_.empty() ? 0 : rowTop_ + rowHeight_ + gap_;
        if (sheets_.empty() || rowTop_ + size.height > room_.height) {
            if (!sheets_.empty()) MoveToMiddle();
            sheets_.emplace_back();
            rowTop_ = 0;
            width_ = 0;
        }
        rowEnd_ = 0;
        rowHeight_ = size.height;
    }

    void MoveToMiddle() {
        double bottom = 0;
        for (const PlacedPortrait& placed : sheets_.back()) bottom = std::max(bottom, placed.Bottom());
        for (PlacedPortrait& placed : sheets_.back()) {
            placed.x += (paper_.width - width_) / 2;
            placed.y += (paper_.height - bottom) / 2;
        }
    }

    const PaperSize paper_;
    const double gap_;
    const PaperSize room_;
    std::vector<Sheet> sheets_;
    double rowEnd_ = 0;
    double rowTop_ = 0;
    double rowHeight_ = 0;
    double width_ = 0; ///< Of the sheet's widest row.
};

struct Direction {
    PaperSize paper;
    std::vector<Sheet> sheets;
    int32 copies = 0;
};

std::vector<Sheet> Filled(const std::vector<PaperSize>& portraits, const PaperSize& paper,
                          const SheetSettings& settings, int32 copies) {
    std::vector<std::size_t> order(portraits.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return portraits[a].height > portraits[b].height; });
    Filler filler(paper, settings);
    for (const std::size_t i : order) {
        for (int32 copy = 0; copy < copies; ++copy) filler.Add(i, portraits[i]);
    }
    return filler.Take();
}

/// As many copies as one sheet takes, or one of each on as many sheets as that takes.
Direction FilledDirection(const std::vector<PaperSize>& portraits, const PaperSize& paper,
                          const SheetSettings& settings) {
    Direction direction{paper, {}, settings.copies.value_or(1)};
    direction.sheets = Filled(portraits, paper, settings, direction.copies);
    if (settings.copies) return direction;
    while (direction.sheets.size() == 1 && direction.copies < kMostOnASheet) {
        std::vector<Sheet> more = Filled(portraits, paper, settings, direction.copies + 1);
        if (more.size() > 1) break;
        direction.sheets = std::move(more);
        ++direction.copies;
    }
    return direction;
}

bool IsBetter(const Direction& a, const Direction& b) {
    return a.sheets.size() != b.sheets.size() ? a.sheets.size() < b.sheets.size() : a.copies > b.copies;
}

} // namespace

std::optional<SheetPlan> PlanSheets(const std::vector<PaperSize>& portraits, const SheetSettings& settings,
                                    std::size_t* tooLarge) {
    std::optional<Direction> best;
    const PaperSize paper = settings.paper;
    for (const PaperSize& turned : {paper, PaperSize{paper.height, paper.width}}) {
        const PaperSize room = Room(turned, settings.margin);
        const auto large = std::find_if_not(portraits.begin(), portraits.end(),
                                            [&](const PaperSize& portrait) { return Fits(portrait, room); });
        if (large != portraits.end()) {
            *tooLarge = static_cast<std::size_t>(large - portraits.begin());
            continue;
        }
        Direction direction = FilledDirection(portraits, turned, settings);
        if (!best || IsBetter(direction, *best)) best = std::move(direction);
    }
    if (!best) return std::nullopt;
    return SheetPlan{best->paper, std::move(best->sheets)};
}

} // namespace orvane::tools
