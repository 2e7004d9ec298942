// Drawing, and contact sheets as they are read back from their files.
#include "tools/train/sheets.h"

#include "tests/support/temp_folder.h"
#include "tools/support/picture_io.h"

#include <gtest/gtest.h>

#include <ostream>

namespace orvane::train {

void PrintTo(const Colour& c, std::ostream* out) { *out << int{c.red} << ' ' << int{c.green} << ' ' << int{c.blue}; }

namespace {

constexpr Colour kGrey{120, 120, 120};
constexpr Colour kBlack{0, 0, 0};
constexpr Colour kWhite{255, 255, 255};

bool Shows(const tools::Picture& picture, int32 x, int32 y, int32 width, int32 height, Colour colour) {
    for (int32 j = y; j < y + height; ++j) {
        for (int32 i = x; i < x + width; ++i) {
            if (PixelAt(picture, i, j) == colour) return true;
        }
    }
    return false;
}

TEST(Canvas, ShrinksByMeansAndGrowsByTheNearestPixel) {
    tools::Picture picture = Blank(4, 2, kBlack);
    FillArea(picture, 0, 0, 1, 2, {200, 100, 40});
    FillArea(picture, 2, 0, 2, 2, kWhite);
    const tools::Picture half = Resized(picture, 2);
    ASSERT_EQ(half.width, 2);
    ASSERT_EQ(half.height, 1);
    EXPECT_EQ(PixelAt(half, 0, 0), (Colour{100, 50, 20}));
    EXPECT_EQ(PixelAt(half, 1, 0), kWhite);
    const tools::Picture twice = Resized(picture, 8);
    ASSERT_EQ(twice.width, 8);
    ASSERT_EQ(twice.height, 4);
    EXPECT_EQ(PixelAt(twice, 1, 3), (Colour{200, 100, 40}));
    EXPECT_EQ(PixelAt(twice, 2, 3), kBlack);
}

TEST(Canvas, AThinPictureKeepsAPixel) {
    const tools::Picture thin = Resized(Blank(1000, 1, kGrey), 10);
    EXPECT_EQ(thin.width, 10);
    EXPECT_EQ(thin.height, 1);
    EXPECT_EQ(PixelAt(thin, 9, 0), kGrey);
}

TEST(Canvas, ASquareIsAnOutlineOfTwoPixels) {
    tools::Picture picture = Blank(20, 20, kGrey);
    DrawSquare(picture, {4, 6, 10}, kWhite);
    for (int32 i = 4; i < 14; ++i) {
        EXPECT_EQ(PixelAt(picture, i, 6), kWhite);
        EXPECT_EQ(PixelAt(picture, i, 15), kWhite);
        EXPECT_EQ(PixelAt(picture, 4, i + 2), kWhite);
        EXPECT_EQ(PixelAt(picture, 13, i + 2), kWhite);
    }
    EXPECT_EQ(PixelAt(picture, 5, 7), kWhite);
    EXPECT_EQ(PixelAt(picture, 6, 8), kGrey) << "inside";
    EXPECT_EQ(PixelAt(picture, 3, 6), kGrey) << "outside";
    EXPECT_EQ(PixelAt(picture, 14, 15), kGrey) << "outside";
}

TEST(Canvas, WhatLiesOutsideIsLeftOut) {
    tools::Picture picture = Blank(5, 5, kGrey);
    DrawSquare(picture, {-3, -3, 5}, kWhite);
    EXPECT_EQ(PixelAt(picture, 1, 1), kWhite);
    EXPECT_EQ(PixelAt(picture, 2, 2), kGrey);
    DrawSquare(picture, {-1e9, 1e9, 1e12}, kWhite);
    DrawText(picture, -5, 3, "edge", kWhite);
    DrawText(picture, 100, 100, "beyond", kWhite);
    EXPECT_EQ(picture.pixels.size(), static_cast<std::size_t>(picture.step) * 5);
}

TEST(Canvas, AnEmptySquareDrawsNothing) {
    tools::Picture picture = Blank(9, 9, kGrey);
    DrawSquare(picture, {4, 4, 0}, kWhite);
    EXPECT_FALSE(Shows(picture, 0, 0, 9, 9, kWhite));
}

TEST(Canvas, LettersAreDrawnInCapitals) {
    tools::Picture small = Blank(16, 10, kBlack);
    tools::Picture capital = small;
    DrawText(small, 0, 0, "l-", kWhite);
    DrawText(capital, 0, 0, "L-", kWhite);
    EXPECT_EQ(small.pixels, capital.pixels);
    EXPECT_TRUE(Shows(small, 0, 0, 2, 10, kWhite)) << "the stroke of L";
    EXPECT_FALSE(Shows(small, 2, 0, 4, 8, kWhite)) << "its right side";
    EXPECT_TRUE(Shows(small, 2, 8, 4, 2, kWhite)) << "its foot";
    EXPECT_EQ(PixelAt(small, 8, 4), kWhite) << "the dash";
}

TEST(Canvas, ASignWithoutALetterBecomesAQuestionMark) {
    tools::Picture strange = Blank(8, 10, kBlack);
    tools::Picture question = strange;
    DrawText(strange, 0, 0, "\xE9", kWhite);
    DrawText(question, 0, 0, "?", kWhite);
    EXPECT_EQ(strange.pixels, question.pixels);
    EXPECT_TRUE(Shows(question, 0, 0, 8, 10, kWhite));
}

class Sheets : public testing::Test {
protected:
    std::string Stem() const { return (folder_.Path() / "misses").string(); }
    tools::Picture Read(int number) const {
        tools::Picture picture;
        std::string error;
        EXPECT_TRUE(tools::ReadPicture(Stem() + "-" + std::to_string(number) + ".png", &picture, &error)) << error;
        return picture;
    }
    bool Exists(int number) const { return std::filesystem::exists(Stem() + "-" + std::to_string(number) + ".png"); }

    test::TempFolder folder_;
};

TEST_F(Sheets, ShowThePictureItsSquaresAndItsWords) {
    ContactSheets sheets(Stem());
    sheets.Add(Blank(480, 240, kGrey), {{{100, 50, 80}, kAnnotatedColour}, {{300, 100, 60}, kReportedColour}}, "a.jpg",
               "missed");
    std::string error;
    ASSERT_TRUE(sheets.Write(error)) << error;
    const tools::Picture sheet = Read(1);
    const int32 at = kSheetMargin;
    EXPECT_EQ(PixelAt(sheet, at + 50, at + 25), kAnnotatedColour);
    EXPECT_EQ(PixelAt(sheet, at + 50 + 39, at + 25 + 39), kAnnotatedColour);
    EXPECT_EQ(PixelAt(sheet, at + 50 + 20, at + 25 + 20), kGrey) << "inside";
    EXPECT_EQ(PixelAt(sheet, at + 49, at + 25), kGrey) << "outside";
    EXPECT_EQ(PixelAt(sheet, at + 150, at + 50), kReportedColour);
    EXPECT_EQ(PixelAt(sheet, at + 239, at + 119), kGrey) << "the picture's last pixel";
    EXPECT_NE(PixelAt(sheet, at + 239, at + 120), kGrey) << "below it";
    EXPECT_TRUE(Shows(sheet, at, at + kThumbnailSide, kThumbnailSide, 15, kWhite)) << "the title";
    EXPECT_EQ(sheet.width, kThumbnailSide + 2 * kSheetMargin);
}

TEST_F(Sheets, KeepTheEndOfALongTitleAndTheBeginningOfALongRemark) {
    const std::string words = "first" + std::string(50, ' ') + "last";
    const auto written = [&](const std::string& title, const std::string& remark) {
        ContactSheets sheets(Stem());
        sheets.Add(Blank(24, 24, kGrey), {}, title, remark);
        std::string error;
        EXPECT_TRUE(sheets.Write(error)) << error;
        return Read(1).pixels;
    };
    EXPECT_EQ(written(words, words), written(std::string(26, ' ') + "last", "first"));
    EXPECT_NE(written(words, words), written("last", "first"));
}

TEST_F(Sheets, HoldThirtyPicturesEach) {
    ContactSheets sheets(Stem());
    for (int i = 0; i < 31; ++i) sheets.Add(Blank(24, 24, kGrey), {}, "", "");
    std::string error;
    ASSERT_TRUE(sheets.Write(error)) << error;
    const tools::Picture first = Read(1);
    EXPECT_EQ(first.width, kSheetColumns * (kThumbnailSide + kSheetMargin) + kSheetMargin);
    EXPECT_EQ(PixelAt(first, first.width - kSheetMargin - 1, first.height - kSheetMargin - 40), kGrey)
        << "the last cell is in use";
    EXPECT_LT(Read(2).height, 2 * kThumbnailSide) << "one row";
    EXPECT_FALSE(Exists(3));
}

TEST_F(Sheets, OfAnEarlierRunAreReplacedAndRemoved) {
    ContactSheets many(Stem());
    for (int i = 0; i < 61; ++i) many.Add(Blank(24, 24, kGrey), {}, "", "");
    ContactSheets one(Stem());
    one.Add(Blank(24, 24, kWhite), {}, "", "");
    std::string error;
    ASSERT_TRUE(many.Write(error) && one.Write(error)) << error;
    EXPECT_EQ(PixelAt(Read(1), kSheetMargin, kSheetMargin), kWhite);
    EXPECT_FALSE(Exists(2));
    EXPECT_FALSE(Exists(3));
    ASSERT_TRUE(ContactSheets(Stem()).Write(error)) << error;
    EXPECT_FALSE(Exists(1)) << "a run without misses leaves none to look at";
}

TEST_F(Sheets, WithoutTheirFolderFailWithAReason) {
    ContactSheets sheets((folder_.Path() / "none" / "misses").string());
    sheets.Add(Blank(24, 24, kGrey), {}, "", "");
    std::string error;
    EXPECT_FALSE(sheets.Write(error));
    EXPECT_NE(error.find("misses-1.png"), std::string::npos) << error;
}

} // namespace
} // namespace orvane::train
