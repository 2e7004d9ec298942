// Contact sheets: names, pages, order, and what stands where.
#include "tools/sheet/contact_sheet.h"

#include "tests/tools/picture_files.h"
#include "tests/tools/temp_folder.h"
#include "tools/sheet/sheet_canvas.h"
#include "tools/sheet/thumbnail.h"
#include "tools/support/file_identity.h"
#include "tools/support/whole_file.h"

namespace orvane::tools {
namespace {

std::vector<SheetEntry> Entries(std::size_t count) {
    std::vector<SheetEntry> entries(count);
    for (std::size_t i = 0; i < count; ++i) entries[i].name = std::to_string(i);
    return entries;
}

TEST(SheetFiles, APictureIsAFileAPageAndAPdfIsOne) {
    EXPECT_EQ(SheetFiles("a/s.png", 0), std::vector<std::string>{"a/s.png"});
    EXPECT_EQ(SheetFiles("a/s.png", 30), std::vector<std::string>{"a/s.png"});
    EXPECT_EQ(SheetFiles("a.b/s.v2.JPG", 61),
              (std::vector<std::string>{"a.b/s.v2.JPG", "a.b/s.v2-2.JPG", "a.b/s.v2-3.JPG"}));
    EXPECT_EQ(SheetFiles("s.PDF", 10000), std::vector<std::string>{"s.PDF"});
}

TEST(SheetNames, AreOfPicturesAndPdf) {
    std::string error;
    for (const char* name : {"", "s", "s.bmp", "s.tif", ".pdf", "s.pdf.txt"}) {
        EXPECT_FALSE(CheckSheetName(name, &error)) << name;
        EXPECT_EQ(error, "--sheet wants a file named .jpg, .png or .pdf, not '" + std::string(name) + "'");
    }
    for (const char* name : {"s.jpg", "s.JPEG", "s.png", "s.Pdf"}) {
        error.clear();
        EXPECT_EQ(CheckSheetName(name, &error), CanDrawSheets());
        EXPECT_EQ(error, CanDrawSheets() ? "" : "--sheet draws text, which this program does on Linux only");
    }
}

TEST(SheetOrder, HasFailuresFirstAndElseStays) {
    std::vector<SheetEntry> entries = Entries(5);
    entries[1].rank = SheetRank::worthALook;
    entries[2].rank = entries[4].rank = SheetRank::failed;
    SortForSheet(&entries);
    std::string names;
    for (const SheetEntry& entry : entries) names += entry.name;
    EXPECT_EQ(names, "24103");
}

TEST(Thumbnails, AreMeansAndKeepTheProportions) {
    Picture picture = BlackPicture(4, 2);
    for (int32 x = 0; x < 2; ++x) {
        SetPixel(picture, x, 0, {200, 0, 0});
        SetPixel(picture, x, 1, {100, 0, 0});
    }
    const Picture small = Thumbnail(picture, 2, 2);
    EXPECT_EQ(small.width, 2);
    EXPECT_EQ(small.height, 1);
    EXPECT_EQ(PixelAt(small, 0, 0).red, 150);
    EXPECT_EQ(PixelAt(small, 1, 0).red, 0);
    const Picture same = Thumbnail(picture, 10, 10);
    EXPECT_EQ(same.pixels, picture.pixels) << "nothing grows";
    const Picture tall = Thumbnail(BlackPicture(1, 3000), 10, 10);
    EXPECT_EQ(tall.width, 1);
    EXPECT_EQ(tall.height, 10);
    EXPECT_EQ(Thumbnail(QuarteredPicture(900, 600), 90, 90).height, 60);
}

class ContactSheet : public testing::Test {
protected:
    void SetUp() override {
        if (!CanDrawSheets()) GTEST_SKIP() << "no text is drawn on this system";
    }

    Picture ReadSheet(const std::string& name) const {
        Picture sheet;
        std::string error;
        EXPECT_TRUE(ReadPicture(folder_ / name, &sheet, &error)) << error;
        return sheet;
    }
    /// A sheet of one colour each, in files.
    std::vector<SheetEntry> Coloured(const std::vector<Colour>& colours) const {
        std::vector<SheetEntry> entries = Entries(colours.size());
        for (std::size_t i = 0; i < colours.size(); ++i) {
            Picture picture = BlackPicture(300, 400);
            for (int32 y = 0; y < 400; ++y) {
                for (int32 x = 0; x < 300; ++x) SetPixel(picture, x, y, colours[i]);
            }
            entries[i].picture = folder_ / (std::to_string(i) + ".png");
            std::string error;
            EXPECT_TRUE(WritePicture(entries[i].picture, picture, true, &error)) << error;
        }
        return entries;
    }

    TempFolder folder_;
    std::string error_;
};

TEST_F(ContactSheet, ShowsEachPictureInItsTile) {
    std::vector<SheetEntry> entries = Coloured({kRed, kGreen, kBlue});
    entries[2].rank = SheetRank::failed;
    ASSERT_TRUE(WriteContactSheet(folder_ / "s.png", entries, false, &error_)) << error_;
    const Picture sheet = ReadSheet("s.png");
    EXPECT_EQ(sheet.width, 1190);
    EXPECT_EQ(sheet.height, 1684);
    // Six tiles a row of some 184 pixels each; pictures stand in their upper parts.
    EXPECT_TRUE(IsNear(PixelAt(sheet, 48 + 87, 180), kBlue, 2)) << "what failed stands first";
    EXPECT_TRUE(IsNear(PixelAt(sheet, 48 + 87 + 184, 180), kRed, 2));
    EXPECT_TRUE(IsNear(PixelAt(sheet, 48 + 87 + 2 * 184, 180), kGreen, 2));
    EXPECT_TRUE(IsNear(PixelAt(sheet, 48 + 87 + 3 * 184, 180), {255, 255, 255}, 0)) << "no fourth tile";
    EXPECT_TRUE(IsNear(PixelAt(sheet, 48 + 2, 360), {255, 222, 217}, 2)) << "the tile of a failure is reddish";
}

TEST_F(ContactSheet, APictureThatIsGoneLeavesItsPlaceEmpty) {
    std::vector<SheetEntry> entries = Coloured({kRed});
    entries.push_back({"gone", "portrait", folder_ / "gone.png", SheetRank::good});
    ASSERT_TRUE(WriteContactSheet(folder_ / "s.png", entries, false, &error_)) << error_;
    EXPECT_TRUE(IsNear(PixelAt(ReadSheet("s.png"), 48 + 87 + 184, 180), {240, 240, 240}, 2));
}

TEST_F(ContactSheet, GoesOnOnFurtherPages) {
    std::vector<SheetEntry> entries = Entries(30);
    const std::vector<SheetEntry> coloured = Coloured({kYellow});
    entries.push_back(coloured[0]);
    ASSERT_TRUE(WriteContactSheet(folder_ / "s.jpg", entries, false, &error_)) << error_;
    EXPECT_TRUE(IsNear(PixelAt(ReadSheet("s-2.jpg"), 48 + 87, 180), kYellow, 12));
    EXPECT_TRUE(IsNear(PixelAt(ReadSheet("s.jpg"), 48 + 87, 180), {240, 240, 240}, 12));
}

TEST_F(ContactSheet, NoPageReplacesAFileUnlessItMay) {
    folder_.Put("s-2.png", "mine");
    EXPECT_FALSE(WriteContactSheet(folder_ / "s.png", Entries(31), false, &error_));
    EXPECT_EQ(error_, "the sheet '" + (folder_ / "s-2.png") + "' exists already; --force replaces it");
    EXPECT_FALSE(IsNameTaken(folder_ / "s.png")) << "nothing is written before all names are free";
    EXPECT_EQ(folder_.Get("s-2.png"), "mine");
    EXPECT_TRUE(WriteContactSheet(folder_ / "s.png", Entries(31), true, &error_)) << error_;
    EXPECT_NE(folder_.Get("s-2.png"), "mine");
}

TEST_F(ContactSheet, TextIsDrawnInEveryScriptAndOnOneLine) {
    // Pages are compared with the same page without the name: what differs is the name's ink.
    std::vector<SheetEntry> entries = Entries(1);
    entries[0].name = "";
    ASSERT_TRUE(WriteContactSheet(folder_ / "plain.png", entries, false, &error_)) << error_;
    const Picture plain = ReadSheet("plain.png");
    for (const char* name : {"Žofie Müller.jpg", "Ольга.jpg", "Ελένη.jpg", "a\nb\x01.jpg", "\xFF\xFE.jpg",
                             "a-very-long-name-that-does-not-fit-into-one-tile-of-the-sheet.jpg"}) {
        entries[0].name = name;
        ASSERT_TRUE(WriteContactSheet(folder_ / "s.png", entries, true, &error_)) << error_;
        const Picture sheet = ReadSheet("s.png");
        int32 inked = 0;
        for (int32 y = 0; y < sheet.height; ++y) {
            for (int32 x = 0; x < sheet.width; ++x) {
                if (IsNear(PixelAt(sheet, x, y), PixelAt(plain, x, y), 60)) continue;
                ++inked;
                ASSERT_TRUE(x > 48 && x < 48 + 174 && y > 290 && y < 350) << name << " " << x << "," << y;
            }
        }
        EXPECT_GT(inked, 50) << name;
    }
}

} // namespace
} // namespace orvane::tools
