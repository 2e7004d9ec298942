// Sheets as pixels: portraits go in pixel by pixel where the resolutions agree.
#include "tools/print/sheet_picture.h"

#include "tests/tools/picture_files.h"

#include <cmath>

namespace orvane::tools {
namespace {

PrintedPortrait Printed(Picture picture, int32 dpi) {
    PrintedPortrait portrait;
    portrait.size = {picture.width * 25.4 / dpi, picture.height * 25.4 / dpi};
    portrait.picture = std::move(picture);
    return portrait;
}

struct DrawnSheet {
    SheetPlan plan;
    Picture picture;
};

DrawnSheet Drawn(const std::vector<PrintedPortrait>& portraits, const PaperSize& paper, int32 dpi, bool cutMarks,
                 double gap = 2) {
    std::vector<PaperSize> sizes;
    for (const PrintedPortrait& portrait : portraits) sizes.push_back(InWholePixels(portrait.size, dpi));
    std::size_t tooLarge = 0;
    DrawnSheet drawn;
    drawn.plan = PlanSheets(sizes, {paper, 3, InWholePixels(gap, dpi), std::nullopt}, &tooLarge).value();
    std::string error;
    EXPECT_TRUE(DrawSheet(drawn.plan.sheets[0], drawn.plan.paper, portraits, dpi, cutMarks, &drawn.picture, &error))
        << error;
    return drawn;
}

bool IsAt(const Picture& sheet, int32 x, int32 y, const Picture& portrait) {
    for (int32 row = 0; row < portrait.height; ++row) {
        for (int32 column = 0; column < portrait.width; ++column) {
            if (!IsNear(PixelAt(sheet, x + column, y + row), PixelAt(portrait, column, row), 0)) return false;
        }
    }
    return true;
}

TEST(SheetPicture, PortraitsOfTheSheetsResolutionKeepEveryPixelAndStandStraight) {
    for (const double gap : {0.0, 2.0}) {
        for (const PaperSize& paper : {PaperSize{60, 80}, PaperSize{60.96, 81.28}}) {
            const std::vector<PrintedPortrait> portraits = {Printed(ColourfulPicture(113, 145), 300)};
            const DrawnSheet drawn = Drawn(portraits, paper, 300, true, gap);
            EXPECT_EQ(drawn.picture.width, std::lround(drawn.plan.paper.width * 300 / 25.4));
            EXPECT_GT(drawn.plan.sheets[0].size(), 15U);
            for (const PlacedPortrait& p : drawn.plan.sheets[0]) {
                const auto x = static_cast<int32>(std::lround(p.x * 300 / 25.4 + 1e-6));
                const auto y = static_cast<int32>(std::lround(p.y * 300 / 25.4 + 1e-6));
                EXPECT_TRUE(IsAt(drawn.picture, x, y, portraits[0].picture)) << x << "," << y << " gap " << gap;
            }
        }
    }
}

TEST(SheetPicture, WhatIsNeitherPortraitNorMarkIsWhite) {
    const DrawnSheet drawn = Drawn({Printed(BlackPicture(120, 120), 300)}, {40, 40}, 300, false);
    std::size_t black = 0;
    for (int32 y = 0; y < drawn.picture.height; ++y) {
        for (int32 x = 0; x < drawn.picture.width; ++x) {
            const Colour colour = PixelAt(drawn.picture, x, y);
            ASSERT_TRUE(IsNear(colour, {0, 0, 0}, 0) || IsNear(colour, {255, 255, 255}, 0));
            if (colour.red == 0) ++black;
        }
    }
    EXPECT_EQ(black, drawn.plan.sheets[0].size() * 120 * 120);
    const DrawnSheet marked = Drawn({Printed(BlackPicture(120, 120), 300)}, {40, 40}, 300, true);
    std::size_t withMarks = 0;
    for (int32 y = 0; y < marked.picture.height; ++y) {
        for (int32 x = 0; x < marked.picture.width; ++x) withMarks += PixelAt(marked.picture, x, y).red == 0;
    }
    EXPECT_GT(withMarks, black);
}

TEST(SheetPicture, OtherResolutionsAreScaledToTheSameMillimetres) {
    for (const int32 dpi : {150, 250, 600}) {
        const std::vector<PrintedPortrait> portraits = {Printed(QuarteredPicture(dpi / 2, dpi), dpi)};
        const DrawnSheet drawn = Drawn(portraits, {20, 40}, 300, false);
        const PlacedPortrait& p = drawn.plan.sheets[0][0];
        EXPECT_NEAR(p.size.width, 12.7, 0.05);
        const auto x = static_cast<int32>(std::lround(p.x * 300 / 25.4));
        const auto y = static_cast<int32>(std::lround(p.y * 300 / 25.4));
        EXPECT_TRUE(IsNear(PixelAt(drawn.picture, x + 20, y + 40), kRed, 1)) << dpi;
        EXPECT_TRUE(IsNear(PixelAt(drawn.picture, x + 130, y + 40), kGreen, 1)) << dpi;
        EXPECT_TRUE(IsNear(PixelAt(drawn.picture, x + 20, y + 260), kBlue, 1)) << dpi;
        EXPECT_TRUE(IsNear(PixelAt(drawn.picture, x + 130, y + 260), kYellow, 1)) << dpi;
    }
}

TEST(SheetPicture, ASheetOfTooManyPixelsIsRefused) {
    const std::vector<PrintedPortrait> portraits = {Printed(BlackPicture(120, 120), 300)};
    Picture picture;
    std::string error;
    EXPECT_FALSE(DrawSheet({}, {2000, 2000}, portraits, 2400, false, &picture, &error));
    EXPECT_NE(error.find("pixels are too many"), std::string::npos) << error;
}

} // namespace
} // namespace orvane::tools
