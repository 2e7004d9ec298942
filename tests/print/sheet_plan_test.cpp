// Where portraits lie on sheets.
#include "tools/print/sheet_plan.h"

#include "tools/print/cut_marks.h"

#include <cmath>
#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

constexpr PaperSize kPassport{35, 45};

struct Space {
    double margin;
    double gap;
};

constexpr Space kNone{0, 0};
constexpr Space kUsual{3, 2};
constexpr Space kWide{5, 2};

SheetPlan Planned(const std::vector<PaperSize>& portraits, SheetSettings settings) {
    std::size_t tooLarge = 0;
    const std::optional<SheetPlan> plan = PlanSheets(portraits, settings, &tooLarge);
    EXPECT_TRUE(plan);
    return plan.value_or(SheetPlan());
}

std::size_t CopiesOn(const PaperSize& paper, const PaperSize& portrait, Space space) {
    const SheetPlan plan = Planned({portrait}, {paper, space.margin, space.gap, std::nullopt});
    EXPECT_EQ(plan.sheets.size(), 1U);
    return plan.sheets.empty() ? 0 : plan.sheets[0].size();
}

/// How many copies the usual papers take: without margins, with 3 mm and 2 mm between, with 5 mm and 2 mm.
struct PaperCase {
    PaperSize paper;
    PaperSize portrait;
    std::size_t copies[3];
};

constexpr PaperCase kPapers[] = {
    {{100, 150}, {35, 45}, {8, 6, 6}},         {{102, 152}, {35, 45}, {8, 8, 6}},
    {{101.6, 152.4}, {35, 45}, {8, 8, 6}},     {{127, 177.8}, {35, 45}, {10, 9, 9}},
    {{130, 180}, {35, 45}, {12, 9, 9}},        {{210, 297}, {35, 45}, {36, 30, 30}},
    {{215.9, 279.4}, {35, 45}, {36, 28, 28}},  {{100, 150}, {51, 51}, {2, 2, 2}},
    {{101.6, 152.4}, {50.8, 50.8}, {6, 2, 2}}, {{102, 152}, {51, 51}, {4, 2, 2}},
    {{210, 297}, {51, 51}, {20, 15, 15}},      {{100, 150}, {33, 48}, {9, 4, 4}},
    {{130, 180}, {33, 48}, {10, 10, 9}},       {{210, 297}, {33, 48}, {36, 32, 32}},
    {{215.9, 279.4}, {33, 48}, {32, 30, 28}},  {{130, 180}, {40, 60}, {9, 8, 4}},
    {{210, 297}, {40, 60}, {21, 18, 18}},      {{100, 150}, {50, 70}, {4, 2, 2}},
    {{215.9, 279.4}, {50, 70}, {15, 12, 10}},  {{100, 150}, {26, 32}, {15, 12, 12}},
    {{127, 177.8}, {26, 32}, {20, 20, 18}},    {{210, 297}, {26, 32}, {72, 60, 56}},
};

TEST(SheetPlan, TheUsualPapersTakeTheirNumberOfCopies) {
    for (const PaperCase& c : kPapers) {
        SCOPED_TRACE(SizeText(c.portrait) + " on " + SizeText(c.paper));
        EXPECT_EQ(CopiesOn(c.paper, c.portrait, kNone), c.copies[0]);
        EXPECT_EQ(CopiesOn(c.paper, c.portrait, kUsual), c.copies[1]);
        EXPECT_EQ(CopiesOn(c.paper, c.portrait, kWide), c.copies[2]);
    }
}

bool Overlap(const PlacedPortrait& a, const PlacedPortrait& b, double gap) {
    return a.x < b.Right() + gap - 1e-6 && b.x < a.Right() + gap - 1e-6 && a.y < b.Bottom() + gap - 1e-6 &&
           b.y < a.Bottom() + gap - 1e-6;
}

/// Everything within the margins, gaps kept, each portrait in its size and as often as it should be.
void ExpectGoodSheets(const std::vector<PaperSize>& portraits, const SheetSettings& settings, std::size_t copies) {
    const SheetPlan plan = Planned(portraits, settings);
    std::vector<std::size_t> counts(portraits.size());
    for (const Sheet& sheet : plan.sheets) {
        EXPECT_FALSE(sheet.empty());
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const PlacedPortrait& p = sheet[i];
            ++counts[p.portrait];
            EXPECT_EQ(p.size.width, portraits[p.portrait].width);
            EXPECT_EQ(p.size.height, portraits[p.portrait].height);
            EXPECT_GE(p.x, settings.margin - 0.026);
            EXPECT_GE(p.y, settings.margin - 0.026);
            EXPECT_LE(p.Right(), plan.paper.width - settings.margin + 0.026);
            EXPECT_LE(p.Bottom(), plan.paper.height - settings.margin + 0.026);
            for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(Overlap(p, sheet[j], settings.gap));
        }
    }
    EXPECT_EQ(counts, std::vector<std::size_t>(portraits.size(), copies));
}

TEST(SheetPlan, MixedPortraitsShareSheetsWithinMarginsAndGaps) {
    const std::vector<PaperSize> mixed = {kPassport, {51, 51}, {26, 32}, {50, 70}, {35, 45}, {25.4, 31.75}};
    for (const PaperSize& paper : {PaperSize{100, 150}, PaperSize{210, 297}}) {
        for (const int32 copies : {1, 2, 7}) {
            ExpectGoodSheets(mixed, {paper, 3, 2, copies}, static_cast<std::size_t>(copies));
            ExpectGoodSheets(mixed, {paper, 0, 0, copies}, static_cast<std::size_t>(copies));
        }
    }
}

TEST(SheetPlan, SheetsLieOnTheirSideWhereThatTakesMore) {
    const SheetPlan lying = Planned({kPassport}, {{102, 152}, 3, 2, 8});
    EXPECT_EQ(lying.paper.width, 152);
    EXPECT_EQ(lying.sheets.size(), 1U);
    EXPECT_EQ(Planned({kPassport}, {{102, 152}, 3, 2, 6}).paper.width, 102) << "upright does as well";
}

TEST(SheetPlan, WithoutANumberOneSheetIsFilledWithAsManyOfEach) {
    const SheetPlan plan = Planned({kPassport, {26, 32}}, {{100, 150}, 3, 2, std::nullopt});
    ASSERT_EQ(plan.sheets.size(), 1U);
    EXPECT_EQ(plan.sheets[0].size() % 2, 0U);
    EXPECT_GE(plan.sheets[0].size(), 6U);
    const SheetPlan many = Planned(std::vector<PaperSize>(9, kPassport), {{100, 150}, 3, 2, std::nullopt});
    EXPECT_EQ(many.sheets.size(), 2U) << "one of each, where one sheet does not take that";
}

TEST(SheetPlan, WhatIsTooLargeForThePaperIsNamed) {
    std::size_t tooLarge = 9;
    EXPECT_FALSE(PlanSheets({kPassport, {95, 45}, {145.1, 20}}, {{100, 150}, 3, 2, 1}, &tooLarge));
    EXPECT_EQ(tooLarge, 2U);
    EXPECT_FALSE(PlanSheets({kPassport}, {{40, 50}, 25, 2, 1}, &tooLarge)) << "nothing but margins";
    EXPECT_TRUE(PlanSheets({{144, 94}}, {{100, 150}, 3, 2, 1}, &tooLarge));
}

TEST(CutMarks, NoneLiesOnAPortraitOrBeyondThePaper) {
    const std::vector<PaperSize> mixed = {kPassport, {51, 51}, {26, 32}};
    for (const double gap : {0.0, 0.5, 2.0, 8.0}) {
        const SheetPlan plan = Planned(mixed, {{210, 297}, 3, gap, 4});
        for (const Sheet& sheet : plan.sheets) {
            const std::vector<CutMark> marks = CutMarks(sheet, plan.paper);
            EXPECT_GE(marks.size(), 8U);
            for (const CutMark& mark : marks) {
                EXPECT_TRUE(mark.left >= 0 && mark.top >= 0 && mark.right <= plan.paper.width &&
                            mark.bottom <= plan.paper.height);
                EXPECT_LE(std::max(mark.right - mark.left, mark.bottom - mark.top), 3 + 1e-9);
                for (const PlacedPortrait& p : sheet) {
                    const bool on = mark.left < p.Right() - 1e-9 && mark.right > p.x + 1e-9 &&
                                    mark.top < p.Bottom() - 1e-9 && mark.bottom > p.y + 1e-9;
                    EXPECT_FALSE(on) << "gap " << gap;
                }
            }
        }
    }
}

TEST(CutMarks, TheyGoOnFromTheEdgesOfASinglePortrait) {
    const SheetPlan plan = Planned({kPassport}, {{100, 150}, 3, 2, 1});
    const PlacedPortrait& p = plan.sheets[0][0];
    const std::vector<CutMark> marks = CutMarks(plan.sheets[0], plan.paper);
    ASSERT_EQ(marks.size(), 8U);
    for (const CutMark& mark : marks) {
        const double x = (mark.left + mark.right) / 2;
        const double y = (mark.top + mark.bottom) / 2;
        const bool lying = mark.right - mark.left > mark.bottom - mark.top;
        const auto isEdge = [](double place, double a, double b) {
            return std::abs(place - a) < 1e-9 || std::abs(place - b) < 1e-9;
        };
        EXPECT_TRUE(lying ? isEdge(y, p.y, p.Bottom()) : isEdge(x, p.x, p.Right()));
        EXPECT_NEAR(std::max(mark.right - mark.left, mark.bottom - mark.top), 3, 1e-9);
    }
}

TEST(Lengths, AreReadInMillimetresCentimetresAndInches) {
    EXPECT_EQ(LengthOf("2mm"), 2.0);
    EXPECT_EQ(LengthOf("0"), 0.0);
    EXPECT_EQ(LengthOf("0.5cm"), 5.0);
    for (const char* text : {"", "2", "mm", "-1mm", "1e2mm", "nanmm", "infmm", "2 mm", "2mmm", "2mm3"}) {
        EXPECT_FALSE(LengthOf(text)) << text;
    }
    EXPECT_EQ(PaperOf("A4")->height, 297);
    EXPECT_EQ(PaperOf("10x15cm")->height, 150);
    EXPECT_NEAR(PaperOf("4x6in")->width, 101.6, 1e-9);
    EXPECT_EQ(PaperOf("letter")->width, 215.9);
    for (const char* text : {"", "A3", "10x15", "x15cm", "10xcm", "0x15cm", "10x15x3cm", "a4mm"}) {
        EXPECT_FALSE(PaperOf(text)) << text;
    }
}

} // namespace
} // namespace orvane::tools
