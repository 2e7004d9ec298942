// A contact sheet as PDF, read by another library than the one that wrote it: poppler's tools.
#include "tests/tools/picture_files.h"
#include "tests/tools/process.h"
#include "tests/tools/temp_folder.h"
#include "tools/sheet/contact_sheet.h"

namespace orvane::tools {
namespace {

class SheetPdf : public testing::Test {
protected:
    ProcessResult Read(const std::string& program, const std::vector<std::string>& arguments) const {
        return RunProcess("/usr/bin/" + program, arguments, folder_.Path());
    }

    TempFolder folder_;
};

TEST_F(SheetPdf, HasEveryNameInOrderOnAsManyPagesAsAreNeeded) {
    std::vector<SheetEntry> entries;
    for (int i = 0; i < 61; ++i) entries.push_back({"n" + std::to_string(i) + ".jpg", "portrait", "", SheetRank::good});
    entries[60] = {"Žofie Ελένη Ольга.jpg", "no face was found", "", SheetRank::failed};
    std::string error;
    ASSERT_TRUE(WriteContactSheet(folder_ / "s.pdf", entries, false, &error)) << error;
    const std::string about = Read("pdfinfo", {"s.pdf"}).out;
    EXPECT_NE(about.find("Pages:           3\n"), std::string::npos) << about;
    EXPECT_NE(about.find("Page size:       595 x 842 pts"), std::string::npos) << about;
    const std::string first = Read("pdftotext", {"-l", "1", "s.pdf", "-"}).out;
    EXPECT_NE(first.find("61 photos, 1 without a portrait; page 1 of 3"), std::string::npos) << first;
    EXPECT_NE(first.find("Žofie Ελένη Ольга.jpg"), std::string::npos) << first;
    EXPECT_NE(first.find("no face was found"), std::string::npos);
    EXPECT_NE(first.find("n28.jpg"), std::string::npos) << "29 more on the first page";
    EXPECT_EQ(first.find("n29.jpg"), std::string::npos);
    const std::string last = Read("pdftotext", {"-f", "3", "s.pdf", "-"}).out;
    EXPECT_NE(last.find("n59.jpg"), std::string::npos) << last;
}

TEST_F(SheetPdf, HoldsItsPicturesSmall) {
    std::vector<SheetEntry> entries(2, {"a", "portrait", folder_ / "a.png", SheetRank::good});
    std::string error;
    ASSERT_TRUE(WritePicture(folder_ / "a.png", ColourfulPicture(1200, 1600), true, &error)) << error;
    ASSERT_TRUE(WriteContactSheet(folder_ / "s.pdf", entries, false, &error)) << error;
    const std::vector<std::string> lines = ProcessResult::Lines(Read("pdfimages", {"-list", "s.pdf"}).out);
    ASSERT_EQ(lines.size(), 4U) << "two lines of headings, two pictures";
    EXPECT_NE(lines[2].find("jpeg"), std::string::npos) << lines[2];
    EXPECT_LT(folder_.Get("s.pdf").size(), 200000U);
}

} // namespace
} // namespace orvane::tools
