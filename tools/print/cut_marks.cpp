#include "tools/print/cut_marks.h"

#include <algorithm>

namespace orvane::tools {
namespace {

constexpr double kLength = 3;
constexpr double kThickness = 0.1;
constexpr double kShortest = 0.3;

/// One line along an axis: it begins at `from` and goes on by `towards`, 1 or -1, at the place `across` of the other
/// axis.
struct Line {
    double from;
    double towards;
    double across;
};

/// A portrait's extent along and across a line.
struct Extent {
    double from, to;
    double low, high;
};

/// Where a line has to end.
double End(const Line& line, const std::vector<Extent>& extents, double paper) {
    double end = std::clamp(line.from + line.towards * kLength, 0.0, paper);
    for (const Extent& extent : extents) {
        const bool beside = extent.low < line.across + kThickness / 2 && extent.high > line.across - kThickness / 2;
        if (!beside) continue;
        if (line.towards > 0 && extent.to > line.from) end = std::min(end, std::max(extent.from, line.from));
        if (line.towards < 0 && extent.from < line.from) end = std::max(end, std::min(extent.to, line.from));
    }
    return end;
}

} // namespace

std::vector<CutMark> CutMarks(const Sheet& sheet, const PaperSize& paper) {
    std::vector<Extent> along;
    std::vector<Extent> down;
    for (const PlacedPortrait& p : sheet) {
        along.push_back({p.x, p.Right(), p.y, p.Bottom()});
        down.push_back({p.y, p.Bottom(), p.x, p.Right()});
    }
    std::vector<CutMark> marks;
    constexpr double kHalf = kThickness / 2;
    for (const PlacedPortrait& p : sheet) {
        for (const double y : {p.y, p.Bottom()}) {
            for (const Line& line : {Line{p.x, -1, y}, Line{p.Right(), 1, y}}) {
                const double end = End(line, along, paper.width);
                const CutMark mark{std::min(line.from, end), y - kHalf, std::max(line.from, end), y + kHalf};
                if (mark.right - mark.left >= kShortest) marks.push_back(mark);
            }
        }
        for (const double x : {p.x, p.Right()}) {
            for (const Line& line : {Line{p.y, -1, x}, Line{p.Bottom(), 1, x}}) {
                const double end = End(line, down, paper.height);
                const CutMark mark{x - kHalf, std::min(line.from, end), x + kHalf, std::max(line.from, end)};
                if (mark.bottom - mark.top >= kShortest) marks.push_back(mark);
            }
        }
    }
    return marks;
}

} // namespace orvane::tools
