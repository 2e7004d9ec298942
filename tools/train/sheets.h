// Contact sheets: pictures side by side, small, with squares drawn on them and two lines of words below.
#pragma once

#include "tools/train/canvas.h"

#include <string>
#include <vector>

namespace orvane::train {

inline constexpr Colour kAnnotatedColour{0, 230, 0};
inline constexpr Colour kReportedColour{255, 40, 40};

/// A square to be drawn, in pixels of its picture; an empty one leaves no trace.
struct Mark {
    FaceSquare square;
    Colour colour;
};

inline constexpr int32 kThumbnailSide = 240;
inline constexpr int32 kSheetMargin = 8;
inline constexpr int32 kSheetColumns = 6;
inline constexpr int32 kSheetRows = 5;

/// Gathers pictures and writes them as `stem`-1.png, `stem`-2.png and so on, 30 a sheet.
class ContactSheets {
public:
    explicit ContactSheets(std::string stem) : stem_(std::move(stem)) {}

    void Add(const tools::Picture& picture, const std::vector<Mark>& marks, std::string title, std::string remark);

    std::size_t Count() const { return cells_.size(); }

    /// Writes all sheets over those of before, and removes further ones with the same stem, which would tell of
    /// another run. False with a reason.
    bool Write(std::string& error) const;

private:
    struct Cell {
        tools::Picture thumbnail;
        std::string title;
        std::string remark;
    };
    tools::Picture Sheet(std::size_t first) const;
    std::string FileOf(std::size_t number) const;

    std::string stem_;
    std::vector<Cell> cells_;
};

} // namespace orvane::train
