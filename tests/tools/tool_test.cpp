// The built program as its callers see it: exit codes, lines, files.
#include "tests/support/tested_file.h"
#include "tests/tools/bright_square.h"
#include "tests/tools/json_reader.h"
#include "tests/tools/process.h"
#include "tests/tools/temp_folder.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;
using Lines = std::vector<std::string>;

/// The program in a folder of its own, with a classifier of the test's choice beside it.
class Tool : public testing::Test {
protected:
    Tool() {
        // The program goes by its own file when it looks for the classifier, so a link with a soft
        // destination would not do.
        const std::filesystem::path program = test::TestedFile(ORVANE_TOOL);
        std::error_code failed;
        std::filesystem::create_hard_link(program, home_ / "orvane", failed);
        if (failed) std::filesystem::copy_file(program, home_ / "orvane");
        home_.Put("Orvane.dat", BrightSquareClassifier());
    }

    ProcessResult Run(const Arguments& arguments, const std::string& outTo = "") const {
        return RunProcess(home_ / "orvane", arguments, work_.Path(), outTo);
    }

    void PutPhoto(const std::string& name, const Picture& picture) const {
        work_.Put(name, Encoded(name.substr(name.rfind('.')), picture));
    }

    Picture Photo() const { return PhotoWithSquare(320, 240, 100, 80); }

    static std::vector<JsonValue> Objects(const std::string& out) {
        std::vector<JsonValue> objects;
        for (const std::string& line : ProcessResult::Lines(out)) objects.push_back(JsonReader::Read(line));
        return objects;
    }

    Lines Names() const {
        Lines names = work_.Names();
        std::sort(names.begin(), names.end());
        return names;
    }

    TempFolder home_;
    TempFolder work_;
};

/// The face of a square at (x, y), within the few pixels that neighbouring windows differ by.
void ExpectFaceOfSquare(const JsonValue& face, int x, int y) {
    ASSERT_EQ(face.kind, '{');
    EXPECT_NEAR(face["x"].Number(), x, 4);
    EXPECT_NEAR(face["y"].Number(), y + kSquareSide - kFaceSide, 4);
    EXPECT_NEAR(face["width"].Number(), kFaceSide, 4);
    EXPECT_EQ(face["width"].text, face["height"].text);
}

TEST_F(Tool, APhotoBecomesAPortraitOfTheSizeAskedFor) {
    PutPhoto("a.png", Photo());
    const ProcessResult result = Run({"portrait", "a.png", "-o", "b.png", "--size", "120x160", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const std::vector<JsonValue> objects = Objects(result.out);
    ASSERT_EQ(objects.size(), 1U) << result.out;
    const JsonValue& line = objects[0];
    EXPECT_EQ(line["photo"].text, "a.png");
    EXPECT_EQ(line["width"].text, "320");
    EXPECT_EQ(line["height"].text, "240");
    EXPECT_EQ(line["status"].text, "0");
    EXPECT_EQ(line["output"].text, "b.png");
    EXPECT_FALSE(line.Has("error"));
    ExpectFaceOfSquare(line["face"], 100, 80);
    for (const char* stage : {"decode", "scale", "detect", "crop", "output", "encode"}) {
        ASSERT_TRUE(line["milliseconds"].Has(stage)) << stage;
        EXPECT_GE(line["milliseconds"][stage].Number(), 0) << stage;
    }
    EXPECT_EQ(line["milliseconds"].members.size(), 6U);

    Picture portrait;
    std::string error;
    ASSERT_TRUE(ReadPicture(work_ / "b.png", &portrait, &error)) << error;
    EXPECT_TRUE(portrait.width == 120 || portrait.height == 160) << portrait.width << "x" << portrait.height;
    EXPECT_TRUE(portrait.width >= 120 && portrait.height >= 160) << portrait.width << "x" << portrait.height;
}

TEST_F(Tool, DetectTellsTheFaceInPixelsOfTheUprightPhotoFromItsTop) {
    const std::string jpeg = Encoded(".jpg", PhotoWithSquare(320, 240, 100, 80));
    work_.Put("a.jpg", jpeg);
    work_.Put("b.jpg", WithExif(jpeg, 6, true)); // turned clockwise: the square's corner comes to (80, 100)
    const ProcessResult result = Run({"detect", "a.jpg", "b.jpg", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const std::vector<JsonValue> objects = Objects(result.out);
    ASSERT_EQ(objects.size(), 2U);
    ExpectFaceOfSquare(objects[0]["face"], 100, 80);
    ExpectFaceOfSquare(objects[1]["face"], 80, 100);
    EXPECT_EQ(objects[1]["width"].text, "240");
    EXPECT_EQ(objects[1]["height"].text, "320");
    EXPECT_TRUE(objects[0]["milliseconds"].Has("decode") && objects[0]["milliseconds"].Has("detect"));
    EXPECT_FALSE(objects[0].Has("output"));
    EXPECT_EQ(Names(), (Lines{"a.jpg", "b.jpg"})) << "detect wrote a file";
}

TEST_F(Tool, WithoutJsonALineForPeopleIsPrinted) {
    PutPhoto("a.png", Photo());
    const ProcessResult detected = Run({"detect", "a.png"});
    EXPECT_EQ(detected.exitCode, 0);
    EXPECT_EQ(detected.out.find("a.png: face at "), 0U) << detected.out;
    const ProcessResult made = Run({"portrait", "a.png", "-o", "b.png"});
    EXPECT_EQ(made.exitCode, 0);
    EXPECT_NE(made.out.find(", portrait b.png, "), std::string::npos) << made.out;
}

TEST_F(Tool, WithoutAFaceNothingIsWrittenAndTheExitCodeIs10) {
    PutPhoto("a.png", PhotoWithoutFace());
    for (const Arguments& arguments :
         {Arguments{"portrait", "a.png", "-o", "b.png", "--json"}, {"detect", "a.png", "--json"}}) {
        const ProcessResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 10);
        EXPECT_EQ(result.err, "orvane: a.png: no face was found\n");
        const std::vector<JsonValue> objects = Objects(result.out);
        ASSERT_EQ(objects.size(), 1U);
        EXPECT_EQ(objects[0]["status"].text, "10");
        EXPECT_EQ(objects[0]["face"].kind, 'n');
        EXPECT_FALSE(objects[0].Has("output"));
    }
    EXPECT_EQ(Names(), Lines{"a.png"});
}

TEST_F(Tool, OneBadPhotoDoesNotStopTheOthersAndErrorsWinOverMissingFaces) {
    PutPhoto("a.png", Photo());
    work_.Put("bad.png", "no picture");
    PutPhoto("empty.png", PhotoWithoutFace());
    PutPhoto("z.bmp", Photo());
    std::filesystem::create_directory(work_ / "out");
    const ProcessResult result = Run({"portrait", "a.png", "bad.png", "empty.png", "absent.jpg", "z.bmp", "-o", "out",
                                      "--size", "480x860", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    const std::vector<JsonValue> objects = Objects(result.out);
    ASSERT_EQ(objects.size(), 5U) << result.out;
    const char* const statuses[] = {"0", "-60", "10", "-60", "0"};
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(objects[i]["status"].text, statuses[i]) << i;
    EXPECT_EQ(objects[1]["width"].kind, 'n');
    EXPECT_EQ(objects[1]["error"].text, "is not a picture of a known format");
    EXPECT_EQ(ProcessResult::Lines(result.err),
              (Lines{"orvane: bad.png: is not a picture of a known format", "orvane: empty.png: no face was found",
                     "orvane: absent.jpg: cannot open: No such file or directory"}));
    EXPECT_TRUE(std::filesystem::exists(work_ / "out/a.png"));
    EXPECT_TRUE(std::filesystem::exists(work_ / "out/z.png"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(work_ / "out"), {}), 2);
}

TEST_F(Tool, APictureThatTheDetectorRefusesIsAnErrorWithItsCode) {
    PutPhoto("tiny.png", ColourfulPicture(1, 1));
    PutPhoto("narrow.png", ColourfulPicture(19, 300));
    const ProcessResult result = Run({"detect", "tiny.png", "narrow.png", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    for (const JsonValue& line : Objects(result.out)) {
        EXPECT_EQ(line["status"].text, "-10");
        EXPECT_EQ(line["error"].text, "the picture is too small");
    }
    EXPECT_EQ(ProcessResult::Lines(result.err).size(), 2U);
}

TEST_F(Tool, AnExistingFileStaysWithoutForce) {
    PutPhoto("a.png", Photo());
    work_.Put("b.png", "before");
    const ProcessResult refused = Run({"portrait", "a.png", "-o", "b.png", "--json"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, "orvane: a.png: the output 'b.png' exists already; --force replaces it\n");
    EXPECT_EQ(work_.Get("b.png"), "before");
    EXPECT_FALSE(Objects(refused.out).at(0).Has("output"));
    EXPECT_EQ(Run({"portrait", "a.png", "-o", "b.png", "--force"}).exitCode, 0);
    EXPECT_EQ(work_.Get("b.png").substr(1, 3), "PNG");
    EXPECT_EQ(Names(), (Lines{"a.png", "b.png"}));
}

TEST_F(Tool, OriginalsStayWhenTheOutputFolderIsTheirOwn) {
    PutPhoto("a.png", Photo());
    const std::string before = work_.Get("a.png");
    EXPECT_EQ(Run({"portrait", "a.png", "-o", "."}).exitCode, 1);
    EXPECT_EQ(Run({"portrait", "./a.png", "-o", work_ / "a.png"}).exitCode, 1);
    EXPECT_EQ(work_.Get("a.png"), before);
    EXPECT_EQ(Run({"portrait", "a.png", "-o", ".", "--force"}).exitCode, 0);
    EXPECT_NE(work_.Get("a.png"), before);
}

TEST_F(Tool, TheExtensionChoosesTheFormatOfTheOutput) {
    PutPhoto("a.png", Photo());
    const std::pair<const char*, const char*> cases[] = {
        {"o.jpg", "\xFF\xD8\xFF"}, {"o.png", "\x89PNG"}, {"o.bmp", "BM"}, {"o.tif", "II"}};
    for (const auto& [name, start] : cases) {
        EXPECT_EQ(Run({"portrait", "a.png", "-o", name}).exitCode, 0) << name;
        EXPECT_EQ(work_.Get(name).rfind(start, 0), 0U) << name;
    }
}

TEST_F(Tool, WithoutCropThePortraitKeepsThePhotosSize) {
    PutPhoto("a.png", Photo());
    ASSERT_EQ(Run({"portrait", "a.png", "-o", "b.png", "--actions", "none"}).exitCode, 0);
    Picture portrait;
    std::string error;
    ASSERT_TRUE(ReadPicture(work_ / "b.png", &portrait, &error)) << error;
    EXPECT_EQ(portrait.width, 320);
    EXPECT_EQ(portrait.height, 240);
}

TEST_F(Tool, AnOutputThatCannotBeWrittenIsAnErrorOfThatPhoto) {
    PutPhoto("a.png", Photo());
    const ProcessResult result = Run({"portrait", "a.png", "-o", "absent/b.png", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "orvane: a.png: the output 'absent/b.png' cannot write: No such file or directory\n");
    EXPECT_FALSE(Objects(result.out).at(0).Has("output"));
}

TEST_F(Tool, NamesThatAreNoTextStillGiveLinesThatParse) {
    const std::string name = "\xFF\"\n\\\xC3\xBC.png";
    PutPhoto(name, Photo());
    std::filesystem::create_directory(work_ / "out");
    const ProcessResult result = Run({"portrait", name, "-o", "out", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const std::vector<JsonValue> objects = Objects(result.out);
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0]["photo"].text, "\xEF\xBF\xBD\"\n\\\xC3\xBC.png");
    EXPECT_TRUE(std::filesystem::exists(work_ / ("out/" + name)));
    const ProcessResult failed = Run({"detect", "\xFE\n.jpg", "--json"});
    EXPECT_EQ(ProcessResult::Lines(failed.err).size(), 1U) << failed.err;
    EXPECT_EQ(Objects(failed.out).size(), 1U);
}

TEST_F(Tool, UsageErrorsGiveOneLineAndExitCode1) {
    for (const Arguments& arguments : {Arguments{},
                                       {"paint"},
                                       {"portrait"},
                                       {"portrait", "a.png"},
                                       {"detect"},
                                       {"portrait", "a.png", "-o", "b.gif"},
                                       {"portrait", "a", "b", "-o", "c.png"},
                                       {"portrait", "a.png", "-o", "b.png", "--size", "1x1"}}) {
        const ProcessResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 1) << testing::PrintToString(arguments);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(ProcessResult::Lines(result.err).size(), 1U) << result.err;
        EXPECT_EQ(result.err.rfind("orvane: ", 0), 0U) << result.err;
    }
    EXPECT_TRUE(Names().empty());
}

TEST_F(Tool, HelpAndVersionGoToStandardOutput) {
    for (const char* argument : {"help", "--help", "-h"}) {
        const ProcessResult result = Run({argument});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_NE(result.out.find("orvane portrait PHOTO"), std::string::npos);
    }
    EXPECT_EQ(Run({"--version"}).out, "orvane " ORVANE_VERSION "\n");
    EXPECT_EQ(Run({"version"}).exitCode, 0);
}

TEST_F(Tool, InfoTellsVersionLibraryClassifierAndProcessor) {
    const ProcessResult text = Run({"info"});
    EXPECT_EQ(text.exitCode, 0) << text.err;
    EXPECT_EQ(text.out.rfind("orvane " ORVANE_VERSION "\n", 0), 0U);
    EXPECT_NE(text.out.find("window 24x24, 1 stages, 1 stumps, 3 rectangles, 116 bytes"), std::string::npos)
        << text.out;

    const ProcessResult json = Run({"info", "--json"});
    EXPECT_EQ(json.exitCode, 0);
    const JsonValue info = Objects(json.out).at(0);
    EXPECT_EQ(info["version"].text, ORVANE_VERSION);
    EXPECT_EQ(info["library"]["bits"].Number(), sizeof(void*) * 8);
    EXPECT_EQ(info["classifier"]["file"].text, home_ / "Orvane.dat");
    EXPECT_EQ(info["classifier"]["status"].text, "0");
    EXPECT_EQ(info["classifier"]["bytes"].Number(), static_cast<double>(BrightSquareClassifier().size()));
    EXPECT_EQ(info["classifier"]["stages"].text, "1");
    EXPECT_TRUE(info["processor"].Has("column"));
}

TEST_F(Tool, AMissingOrBrokenClassifierIsToldByInfoAndFailsEveryPhoto) {
    PutPhoto("a.png", Photo());
    for (const bool missing : {true, false}) {
        std::filesystem::remove(home_ / "Orvane.dat");
        if (!missing) home_.Put("Orvane.dat", BrightSquareClassifier().substr(0, 100));
        const ProcessResult info = Run({"info", "--json"});
        EXPECT_EQ(info.exitCode, 1);
        EXPECT_EQ(Objects(info.out).at(0)["classifier"]["status"].text, "-70");
        EXPECT_EQ(ProcessResult::Lines(info.err).size(), 1U);
        const ProcessResult detected = Run({"detect", "a.png", "a.png", "--json"});
        EXPECT_EQ(detected.exitCode, 1);
        for (const JsonValue& line : Objects(detected.out)) EXPECT_EQ(line["status"].text, "-70");
        EXPECT_EQ(ProcessResult::Lines(detected.err).size(), 2U);
    }
}

TEST_F(Tool, LinesThatCannotBePrintedAreAnError) {
    PutPhoto("a.png", Photo());
    const ProcessResult full = Run({"detect", "a.png"}, "/dev/full");
    const ProcessResult closed =
        RunProcess("/bin/sh", {"-c", "exec '" + (home_ / "orvane") + "' detect a.png >&-"}, work_.Path());
    for (const ProcessResult& result : {full, closed}) {
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.err, "orvane: cannot write to standard output\n");
    }
}

TEST_F(Tool, APortraitIsWholeAlsoWithoutStandardStreams) {
    PutPhoto("a.png", Photo());
    RunProcess("/bin/sh", {"-c", "exec '" + (home_ / "orvane") + "' portrait a.png -o b.png <&- >&- 2>&-"},
               work_.Path());
    Picture portrait;
    std::string error;
    EXPECT_TRUE(ReadPicture(work_ / "b.png", &portrait, &error)) << error;
}

TEST_F(Tool, ACropThatFailsWritesNothing) {
    PutPhoto("a.png", Photo());
    const ProcessResult result =
        Run({"portrait", "a.png", "-o", "b.png", "--size", "480x860", "--crop-ratio", "0.001", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("a correction failed"), std::string::npos) << result.err;
    const JsonValue line = Objects(result.out).at(0);
    EXPECT_TRUE(line.Has("error"));
    EXPECT_FALSE(line.Has("output"));
    EXPECT_EQ(Names(), Lines{"a.png"});
}

} // namespace
} // namespace orvane::tools
