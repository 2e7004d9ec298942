// The files of portraits, as other programs read them.
#include "tests/tool_files/icc_profile.h"
#include "tests/written_files/reading_tools.h"

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;

class PortraitFiles : public testing::Test, protected PlacedTool {
protected:
    PortraitFiles() : PlacedTool(ORVANE_TOOL) { PutPhoto("a.png"); }

    ProcessResult Portrait(const std::string& output, const Arguments& more) const {
        Arguments arguments{"portrait", "a.png", "-o", output, "--size", "160x200", "--force"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunTool(arguments);
    }

    std::map<std::string, std::string> TagsWith(const std::string& output, const Arguments& more) const {
        const ProcessResult result = Portrait(output, more);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        // TIFF and BMP files of this kind lack tags that cameras write.
        if (output == "p.jpg" || output == "p.png") {
            EXPECT_EQ(Validated(Work() / output), "OK") << output;
        }
        return TagsOf(Work() / output);
    }

    std::uintmax_t SizeOfFile(const std::string& name) const {
        return std::filesystem::file_size(TempFolder::Native(Work() / name));
    }

    /// A run that fails with one line, and leaves nothing.
    void ExpectRefused(const std::string& output, const Arguments& more, const std::string& line) const {
        const ProcessResult result = Portrait(output, more);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "orvane: " + line + "\n");
        EXPECT_FALSE(Has(output));
        EXPECT_EQ(Names("").size(), 1U) << "something is left";
    }
};

TEST_F(PortraitFiles, EveryFormatTellsItsResolution) {
    std::map<std::string, std::string> tags = TagsWith("p.jpg", {"--dpi", "300"});
    EXPECT_EQ(tags["XResolution"], "300");
    EXPECT_EQ(tags["YResolution"], "300");
    EXPECT_EQ(tags["ResolutionUnit"], "1") << "inches";
    tags = TagsWith("p.tif", {"--dpi", "301"});
    EXPECT_EQ(tags["XResolution"], "301");
    EXPECT_EQ(tags["ResolutionUnit"], "2") << "inches";
    tags = TagsWith("p.png", {"--dpi", "600"});
    EXPECT_EQ(tags["PixelsPerUnitX"], "23622");
    EXPECT_EQ(tags["PixelUnits"], "1") << "metres";
    tags = TagsWith("p.bmp", {"--dpi", "300"});
    EXPECT_EQ(tags["PixelsPerMeterY"], "11811");
    EXPECT_EQ(TagsWith("p.jpg", {})["ResolutionUnit"], "0") << "nothing that was not asked for";
    EXPECT_EQ(TagsWith("p.png", {}).count("PixelsPerUnitX"), 0U);
}

TEST_F(PortraitFiles, JpegHasTheChromaAndTheQualityAskedFor) {
    EXPECT_EQ(TagsWith("p.jpg", {})["YCbCrSubSampling"], "2 2");
    EXPECT_EQ(TagsWith("p.jpg", {"--chroma", "422"})["YCbCrSubSampling"], "2 1");
    EXPECT_EQ(TagsWith("p.jpg", {"--chroma=444"})["YCbCrSubSampling"], "1 1");
    const auto atQuality = [&](const std::string& quality) {
        EXPECT_EQ(Portrait("p.jpg", {"--quality", quality}).exitCode, 0);
        return Work().Get("p.jpg");
    };
    EXPECT_LT(atQuality("30").size(), atQuality("95").size());
    const std::string plain = atQuality("95");
    EXPECT_EQ(Portrait("p.jpg", {}).exitCode, 0);
    EXPECT_EQ(Work().Get("p.jpg"), plain);
}

TEST_F(PortraitFiles, SizesStayBetweenFloorAndCeiling) {
    TagsWith("p.jpg", {"--max-kb", "3"});
    EXPECT_LE(SizeOfFile("p.jpg"), 3000U);
    TagsWith("p.jpg", {"--min-kb", "90"});
    EXPECT_EQ(SizeOfFile("p.jpg"), 90U * 1024);
    TagsWith("p.jpg", {"--min-kb", "40", "--max-kb", "41"});
    EXPECT_EQ(SizeOfFile("p.jpg"), 40U * 1024);
    TagsWith("p.png", {"--min-kb", "200", "--dpi", "300"});
    EXPECT_EQ(SizeOfFile("p.png"), 200U * 1024);
}

TEST_F(PortraitFiles, WhatCannotBeMetIsOneLineAndNoFile) {
    const std::pair<const char*, const char*> kCeilings[] = {
        {"p.bmp", "bytes, more than 1000, and can be made no smaller\n"},
        {"p.jpg", "bytes, more than 1000, even at quality 1\n"}};
    for (const auto& [output, end] : kCeilings) {
        const ProcessResult result = Portrait(output, {"--max-kb", "1"});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.err.find("orvane: a.png: the output '"), 0U) << result.err;
        EXPECT_NE(result.err.find(end), std::string::npos) << result.err;
        EXPECT_FALSE(Has(output));
    }
    ExpectRefused("p.jpg", {"--min-kb", "41", "--max-kb", "41"},
                  "no file has at least 41984 bytes (--min-kb) and at most 41000 (--max-kb)");
    ExpectRefused("p.png", {"--quality", "80"}, "--quality is for .jpg");
    ExpectRefused("p.png", {"--chroma", "420"}, "--chroma is for .jpg");
    ExpectRefused("p.tif", {"--min-kb", "4"}, "--min-kb is for .jpg and .png");
    ExpectRefused("p.bmp", {"--keep-metadata"}, "--keep-metadata is for .jpg and .png");
    ExpectRefused("p.jpg", {"--quality", "101"}, "--quality wants a number, 1 to 100, not '101'");
    ExpectRefused("p.jpg", {"--chroma", "411"}, "--chroma knows 444, 422 and 420, not '411'");
    ExpectRefused("p.jpg", {"--dpi", "0"}, "--dpi wants pixels an inch, 36 to 2400, not '0'");
    ExpectRefused("p.jpg", {"--max-kb", "0"}, "--max-kb wants kilobytes, 1 to 100000, not '0'");
    ExpectRefused("p.jpg", {"--min-kb", "1.5"}, "--min-kb wants kilobytes, 1 to 100000, not '1.5'");
}

TEST_F(PortraitFiles, MetadataGoesAlongOnlyWhenAskedForAndNeverThePlaceOrTheThumbnail) {
    Work().Put("a.jpg", Encoded(".jpg", PhotoWithSquare(240, 200, 40, 60)));
    const ProcessResult noted = RunProcess(
        "/usr/bin/exiftool",
        {"-q", "-overwrite_original", "-Make=Maker", "-Model=Model 7", "-DateTimeOriginal=2026:11:22 10:11:12",
         "-Copyright=Ann", "-GPSLatitude=48", "-GPSLatitudeRef=N", "-SerialNumber=4711", "-Orientation#=1",
         "-ImageDescription=secret", "-ThumbnailImage<=a.jpg", "-XMP-dc:Creator=Somebody", "a.jpg"},
        Work().Path());
    ASSERT_EQ(noted.exitCode, 0) << noted.err;
    ASSERT_EQ(TagsOf(Work() / "a.jpg").count("GPSLatitude"), 1U);
    for (const std::string output : {"p.jpg", "p.png"}) {
        ASSERT_EQ(RunTool({"portrait", "a.jpg", "-o", output, "--size", "160x200", "--keep-metadata"}).exitCode, 0);
        std::map<std::string, std::string> tags = TagsOf(Work() / output);
        EXPECT_EQ(tags["Make"], "Maker") << output;
        EXPECT_EQ(tags["Model"], "Model 7");
        EXPECT_EQ(tags["DateTimeOriginal"], "2026:11:22 10:11:12");
        EXPECT_EQ(tags["Copyright"], "Ann");
        EXPECT_EQ(tags["Orientation"], "1");
        EXPECT_EQ(tags["ColorSpace"], "1");
        for (const char* dropped : {"GPSLatitude", "GPSLatitudeRef", "SerialNumber", "ImageDescription",
                                    "ThumbnailOffset", "ThumbnailImage", "Creator"}) {
            EXPECT_EQ(tags.count(dropped), 0U) << dropped;
        }
        ASSERT_EQ(RunTool({"portrait", "a.jpg", "-o", output, "--size", "160x200", "--force"}).exitCode, 0);
        tags = TagsOf(Work() / output);
        EXPECT_EQ(tags.count("Make") + tags.count("Copyright") + tags.count("Orientation"), 0U) << output;
    }
}

TEST_F(PortraitFiles, ABrokenProfileIsAWarningAndThePortraitIsMade) {
    Work().Put("b.jpg", WithProfile(Encoded(".jpg", PhotoWithSquare(240, 200, 40, 60)), "no profile"));
    const ProcessResult result = RunTool({"portrait", "b.jpg", "-o", "p.png", "--size", "160x200"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err,
              "orvane: b.jpg: warning: its colour profile cannot be used; its colours were taken as sRGB\n");
    EXPECT_TRUE(Has("p.png"));
}

TEST_F(PortraitFiles, WorkersHaveTheSameSettings) {
    Make("in");
    PutPhoto("in/a.png");
    PutPhoto("in/b.png", 9);
    Make("out");
    const Arguments settings{"--size", "160x200",   "--dpi", "300",      "--chroma",
                             "444",    "--quality", "80",    "--min-kb", "30"};
    Arguments many{"portrait", "in", "-o", "out", "--output-name", "{stem}.jpg"};
    many.insert(many.end(), settings.begin(), settings.end());
    ASSERT_EQ(RunTool(many).exitCode, 0);
    Arguments one{"portrait", "in/b.png", "-o", "one.jpg"};
    one.insert(one.end(), settings.begin(), settings.end());
    ASSERT_EQ(RunTool(one).exitCode, 0);
    EXPECT_EQ(Work().Get("out/b.jpg"), Work().Get("one.jpg"));
    EXPECT_EQ(SizeOfFile("out/a.jpg"), 30U * 1024);
    EXPECT_EQ(TagsOf(Work() / "out/a.jpg")["YCbCrSubSampling"], "1 1");
}

} // namespace
} // namespace orvane::tools
