#include "tools/print/sheet_plan.h"

#include <algorithm>
#include <utility>

namespace orvane::tools {
namespace {

/// What margins may lose to portraits whose pixels come to a bit more than their millimetres.
constexpr double kSlack = 0.05;
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

/// Portraits of one kind that are not placed yet.
struct Pile {
    std::size_t portrait;
    PaperSize size;
    int32 left;
};

/// The highest first.
std::vector<Pile> PilesOf(const std::vector<PaperSize>& portraits, int32 copies) {
    std::vector<Pile> piles;
    for (std::size_t i = 0; i < portraits.size(); ++i) piles.push_back({i, portraits[i], copies});
    std::stable_sort(piles.begin(), piles.end(),
                     [](const Pile& a, const Pile& b) { return a.size.height > b.size.height; });
    return piles;
}

/// One row at `top`: of each pile in turn as many as fit, so that it has the height of its first portrait. Gives its
/// end on the right; 0 where nothing fits.
double FillRow(double top, const PaperSize& room, double gap, std::vector<Pile>* piles, Sheet* sheet) {
    double end = -gap;
    for (Pile& pile : *piles) {
        while (pile.left > 0 && end + gap + pile.size.width <= room.width && top + pile.size.height <= room.height) {
            sheet->push_back({pile.portrait, end + gap, top, pile.size});
            end = sheet->back().Right();
            --pile.left;
        }
    }
    return std::max(end, 0.0);
}

/// One sheet, with its portraits in the middle.
Sheet FillSheet(const PaperSize& paper, const SheetSettings& settings, std::vector<Pile>* piles) {
    const PaperSize room = Room(paper, settings.margin);
    Sheet sheet;
    double width = 0;
    double bottom = 0;
    for (double top = 0;; top = bottom + settings.gap) {
        const std::size_t before = sheet.size();
        width = std::max(width, FillRow(top, room, settings.gap, piles, &sheet));
        if (sheet.size() == before) break;
        bottom = sheet[before].Bottom();
    }
    for (PlacedPortrait& placed : sheet) {
        placed.x += (paper.width - width) / 2;
        placed.y += (paper.height - bottom) / 2;
    }
    return sheet;
}

struct Direction {
    PaperSize paper;
    std::vector<Sheet> sheets;
    int32 copies = 0;
};

/// Each portrait fits on the paper, so every sheet takes some.
std::vector<Sheet> Filled(const std::vector<PaperSize>& portraits, const PaperSize& paper,
                          const SheetSettings& settings, int32 copies) {
    std::vector<Pile> piles = PilesOf(portraits, copies);
    std::vector<Sheet> sheets;
    while (std::any_of(piles.begin(), piles.end(), [](const Pile& pile) { return pile.left > 0; })) {
        sheets.push_back(FillSheet(paper, settings, &piles));
    }
    return sheets;
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
