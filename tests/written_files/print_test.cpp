// Print sheets, measured by other programs.
#include "tests/tool_files/icc_profile.h"
#include "tests/written_files/reading_tools.h"

#include <cmath>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;

constexpr int kFine = 600;

class PrintSheets : public testing::Test, protected PlacedTool {
protected:
    PrintSheets() : PlacedTool(ORVANE_TOOL) {}

    /// A portrait of 413x531 pixels with 300 an inch: 35x45 mm.
    void PutPortrait(const std::string& name, const Picture& picture, int32 dpi = 300) const {
        PortraitFile file;
        if (dpi > 0) file.settings.dpi = dpi;
        std::string bytes;
        std::string error;
        ASSERT_TRUE(EncodePicture(name, Picture(picture), file, &bytes, &error)) << error;
        Work().Put(name, bytes);
    }

    ProcessResult Print(const Arguments& more) const {
        Arguments arguments{"print"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunTool(arguments);
    }

    void ExpectRefused(const Arguments& arguments, const std::string& line) const {
        const auto before = Names("");
        const ProcessResult result = Print(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "orvane: " + line + "\n");
        EXPECT_EQ(Names(""), before);
    }
};

/// Runs of pixels of a colour along a line, as first pixel and length.
std::vector<std::pair<int32, int32>> Runs(const Picture& picture, bool across, int32 place, Colour colour) {
    std::vector<std::pair<int32, int32>> runs;
    bool inside = false;
    const int32 length = across ? picture.width : picture.height;
    for (int32 i = 0; i < length; ++i) {
        const bool is = IsNear(across ? PixelAt(picture, i, place) : PixelAt(picture, place, i), colour, 40);
        if (is && !inside) runs.emplace_back(i, 0);
        if (is) ++runs.back().second;
        inside = is;
    }
    return runs;
}

double Millimetres(int32 pixels) { return pixels * 25.4 / kFine; }

Picture Flat(int32 width, int32 height, Colour colour) {
    Picture picture = BlackPicture(width, height);
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) SetPixel(picture, x, y, colour);
    }
    return picture;
}

TEST_F(PrintSheets, APdfHasEachPortraitInItsMillimetres) {
    PutPortrait("p.png", Flat(413, 531, kBlue));
    const ProcessResult result = Print({"p.png", "-o", "s.pdf"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "s.pdf: 1 sheet of 100x150 mm with 6 portraits; print at 100 %\n");
    const Picture page = PageOf(Work() / "s.pdf", 1, kFine);
    EXPECT_NEAR(Millimetres(page.width), 100, 0.06);
    EXPECT_NEAR(Millimetres(page.height), 150, 0.06);
    const auto across = Runs(page, true, page.height / 2, kBlue);
    const auto down = Runs(page, false, across.at(0).first + 100, kBlue);
    ASSERT_EQ(across.size(), 2U);
    ASSERT_EQ(down.size(), 3U);
    for (const auto& run : across) EXPECT_NEAR(Millimetres(run.second), 34.967, 0.06);
    for (const auto& run : down) EXPECT_NEAR(Millimetres(run.second), 44.958, 0.06);
    const int32 gap = across[1].first - across[0].first - across[0].second;
    EXPECT_NEAR(Millimetres(gap), 2, 0.06);
    EXPECT_NEAR(Millimetres(down[0].first), Millimetres(page.height - down[2].first - down[2].second), 0.1);
}

TEST_F(PrintSheets, APdfHoldsThePortraitsOwnPixels) {
    PutPortrait("p.png", ColourfulPicture(413, 531));
    PutPortrait("q.jpg", ColourfulPicture(602, 602));
    ASSERT_EQ(Print({"p.png", "q.jpg", "-o", "s.pdf", "--paper", "A4", "--copies", "2"}).exitCode, 0);
    const auto pictures = PicturesOf(Work() / "s.pdf");
    ASSERT_EQ(pictures.size(), 4U);
    int jpegs = 0;
    for (const auto& row : pictures) {
        const bool jpeg = row[8] == "jpeg";
        jpegs += jpeg ? 1 : 0;
        EXPECT_EQ(row[3] + "x" + row[4], jpeg ? "602x602" : "413x531");
        EXPECT_EQ(row[12], "300") << "pixels an inch across";
        EXPECT_EQ(row[13], "300") << "and down";
    }
    EXPECT_EQ(jpegs, 2);
    const ProcessResult all = RunProcess("/usr/bin/pdfimages", {"-all", "s.pdf", "out"}, Work().Path());
    ASSERT_EQ(all.exitCode, 0) << all.err;
    bool jpegIsAsItWas = false;
    for (const std::string& name : Names("")) {
        if (name == "out-000.jpg" || name == "out-002.jpg") jpegIsAsItWas = Work().Get(name) == Work().Get("q.jpg");
        if (name != "out-000.png" && name != "out-002.png") continue;
        Picture back;
        std::string error;
        ASSERT_TRUE(ReadPicture(Work() / name, &back, &error)) << error;
        EXPECT_EQ(back.pixels, ColourfulPicture(413, 531).pixels);
    }
    EXPECT_TRUE(jpegIsAsItWas);
}

TEST_F(PrintSheets, AJpegThatIsNotAsItShowsIsTurnedAndConvertedFirst) {
    PutPortrait("q.jpg", QuarteredPicture(600, 400));
    Work().Put("q.jpg", WithProfile(WithExif(Work().Get("q.jpg"), 6, true), ColourProfile(kDisplayP3)));
    ASSERT_EQ(Print({"q.jpg", "-o", "s.pdf", "--copies", "1"}).exitCode, 0);
    const auto pictures = PicturesOf(Work() / "s.pdf");
    ASSERT_EQ(pictures.size(), 1U);
    EXPECT_EQ(pictures[0][3] + "x" + pictures[0][4], "400x600");
    EXPECT_EQ(pictures[0][8], "image") << "not the JPEG stream";
}

TEST_F(PrintSheets, PortraitsAreNeitherMirroredNorTurned) {
    PutPortrait("p.png", QuarteredPicture(413, 531));
    for (const std::string sheet : {"s.pdf", "s.png"}) {
        ASSERT_EQ(Print({"p.png", "-o", sheet, "--copies", "8", "--paper", "102x152mm"}).exitCode, 0);
        Picture page;
        std::string error;
        if (sheet == "s.pdf") {
            page = PageOf(Work() / sheet, 1, 300);
        } else {
            ASSERT_TRUE(ReadPicture(Work() / sheet, &page, &error)) << error;
        }
        EXPECT_GT(page.width, page.height) << "eight fit only on a sheet on its side";
        const auto red = Runs(page, true, page.height / 4, kRed);
        const auto green = Runs(page, true, page.height / 4 - 60, kGreen);
        ASSERT_EQ(red.size(), 4U) << sheet;
        ASSERT_EQ(green.size(), 4U) << sheet;
        EXPECT_LT(red[0].first, green[0].first);
        const auto down = Runs(page, false, red[0].first + 50, kBlue);
        ASSERT_EQ(down.size(), 2U);
        EXPECT_GT(down[0].first, Runs(page, false, red[0].first + 50, kRed)[0].first);
    }
}

TEST_F(PrintSheets, ASheetInPixelsHasTheResolutionOfThePaper) {
    PutPortrait("p.png", Flat(413, 531, kBlue));
    ASSERT_EQ(Print({"p.png", "-o", "s.png", "--dpi", "600"}).exitCode, 0);
    std::map<std::string, std::string> tags = TagsOf(Work() / "s.png");
    EXPECT_EQ(tags["PixelsPerUnitX"], "23622");
    EXPECT_EQ(tags["ImageWidth"], "2362");
    Picture sheet;
    std::string error;
    ASSERT_TRUE(ReadPicture(Work() / "s.png", &sheet, &error)) << error;
    const auto across = Runs(sheet, true, sheet.height / 2, kBlue);
    ASSERT_EQ(across.size(), 2U);
    EXPECT_EQ(across[0].second, 826);
    ASSERT_EQ(Print({"p.png", "-o", "s.jpg"}).exitCode, 0);
    EXPECT_EQ(TagsOf(Work() / "s.jpg")["XResolution"], "300");
    EXPECT_EQ(TagsOf(Work() / "s.jpg")["ImageWidth"], "1181");
}

TEST_F(PrintSheets, CutMarksStandOutsideThePortraits) {
    PutPortrait("p.png", Flat(413, 531, kBlue));
    ASSERT_EQ(Print({"p.png", "-o", "s.pdf", "--cut-marks", "--copies", "1"}).exitCode, 0);
    const Picture page = PageOf(Work() / "s.pdf", 1, kFine);
    const auto across = Runs(page, true, page.height / 2, kBlue);
    const auto down = Runs(page, false, page.width / 2, kBlue);
    ASSERT_EQ(across.size(), 1U);
    EXPECT_NEAR(Millimetres(across[0].second), 34.967, 0.06) << "no mark takes from it";
    const int32 right = across[0].first + across[0].second;
    // Marks go on from the upper edge, to the right of the portrait.
    const auto mark = Runs(page, false, right + 30, {0, 0, 0});
    ASSERT_EQ(mark.size(), 2U);
    EXPECT_NEAR(Millimetres(mark[0].first + mark[0].second / 2 - down[0].first), 0, 0.1);
    const auto length = Runs(page, true, mark[0].first + mark[0].second / 2, {0, 0, 0});
    ASSERT_EQ(length.size(), 2U);
    EXPECT_NEAR(Millimetres(length[1].second), 3, 0.1);
}

TEST_F(PrintSheets, SeveralSheetsAreThePagesOfAPdf) {
    PutPortrait("p.png", Flat(413, 531, kBlue));
    PutPortrait("q.png", Flat(602, 602, kRed));
    const ProcessResult result = Print({"p.png", "q.png", "-o", "s.pdf", "--copies", "5"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto pictures = PicturesOf(Work() / "s.pdf");
    EXPECT_EQ(pictures.size(), 10U);
    EXPECT_GT(std::stoi(pictures.back()[0]), 1);
    ExpectRefused({"p.png", "q.png", "-o", "t.png", "--copies", "5"},
                  "the portraits take " + pictures.back()[0] + " sheets; only a .pdf has several");
}

TEST_F(PrintSheets, BadInputIsOneLineAndNoSheet) {
    PutPortrait("p.png", Flat(413, 531, kBlue));
    PutPortrait("plain.png", Flat(413, 531, kBlue), 0);
    Work().Put("broken.jpg", "no picture");
    ExpectRefused({"plain.png", "-o", "s.pdf"},
                  "plain.png: does not tell its resolution; --size, such as 35x45mm, tells how large it is");
    EXPECT_EQ(Print({"plain.png", "-o", "ok.pdf", "--size", "35x45mm"}).exitCode, 0);
    Remove("ok.pdf");
    ExpectRefused({"p.png", "-o", "s.pdf", "--size", "51x51mm"},
                  "p.png: has 413x531 pixels, which are not in the proportions of 51x51 mm");
    ExpectRefused({"p.png", "-o", "s.pdf", "--paper", "30x40mm"},
                  "p.png: is 34.97x44.96 mm, too large for paper of 30x40 mm with its margins");
    ExpectRefused({"p.png", "broken.jpg", "-o", "s.pdf"}, "broken.jpg: is not a picture of a known format");
    ExpectRefused({"p.png", "gone.jpg", "-o", "s.pdf"}, "gone.jpg: cannot open: No such file or directory");
    ExpectRefused({"p.png", "-o", "p.png", "--force"}, "the output 'p.png' is one of the portraits");
    ExpectRefused({"p.png", "-o", "plain.png"}, "the output 'plain.png' exists already; --force replaces it");
    ExpectRefused({"-o", "s.pdf"}, "'print' wants at least one portrait");
    ExpectRefused({"p.png"}, "'print' wants -o and a file");
    ExpectRefused({"p.png", "-o", "s.gif"}, "-o wants a file named .pdf, .png, .jpg, .tif or .bmp, not 's.gif'");
    ExpectRefused({"p.png", "-o", "s.pdf", "--dpi", "300"},
                  "--dpi is for sheets in pixels; a .pdf has the pixels of its portraits");
    ExpectRefused({"p.png", "-o", "s.pdf", "--copies", "0"}, "--copies wants a number, 1 to 1000, not '0'");
    ExpectRefused({"p.png", "-o", "s.pdf", "--gap", "2"}, "--gap wants a length such as 2mm, up to 100mm, not '2'");
    ExpectRefused({"p.png", "-o", "s.pdf", "--margin", "-1mm"},
                  "--margin wants a length such as 2mm, up to 100mm, not '-1mm'");
    ExpectRefused({"p.png", "-o", "s.pdf", "--size", "35mm"},
                  "--size wants a portrait's size such as 35x45mm, not '35mm'");
    ExpectRefused({"p.png", "-o", "s.pdf", "--paper", "A3"},
                  "--paper wants A4, A5, A6, letter or a size such as 10x15cm, 4x6in or 102x152mm, each side from 20 "
                  "to 2000 mm, not 'A3'");
    ExpectRefused({"p.png", "-o", "s.pdf", "--mirror"}, "'print' knows no option '--mirror'");
    ExpectRefused({"p.png", "-o"}, "'-o' wants a value");
}

} // namespace
} // namespace orvane::tools
