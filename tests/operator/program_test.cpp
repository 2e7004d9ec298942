// The built program over the built library as its callers see them: exit codes, lines, files.
#include "tests/tools/bright_square.h"
#include "tests/tools/process.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;

/// Program and library in a folder of their own, with a classifier of the test's choice beside them.
class OperatorProgram : public testing::Test {
protected:
    OperatorProgram() {
        for (const std::filesystem::path file : {ORVANE_OPERATOR, ORVANE_LIBRARY_FILE}) {
            std::filesystem::copy_file(file, home_ / file.filename().string());
        }
        program_ = home_ / std::filesystem::path(ORVANE_OPERATOR).filename().string();
        home_.Put("Orvane.dat", BrightSquareClassifier());
        work_.Put("a.png", Encoded(".png", PhotoWithSquare(320, 240, 100, 80)));
    }

    /// Without the lines that the library writes for want of a window or a camera, which are none of the program's.
    ProcessResult Run(const Arguments& arguments) const {
        ProcessResult result = RunProcess(program_, arguments, work_.Path());
        while (result.err.rfind("orvane: working without a ", 0) == 0) {
            result.err.erase(0, result.err.find('\n') + 1);
        }
        return result;
    }

    ProcessResult Review(const Arguments& more) const {
        Arguments arguments = {"review", "--hidden"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Run(arguments);
    }

    /// One line on standard error and nothing else.
    static void ExpectOneLine(const ProcessResult& result, int code, const std::string& line) {
        EXPECT_EQ(result.exitCode, code) << line;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "orvane-operator: " + line + "\n");
    }

    Picture Portrait(const std::string& name) const {
        Picture portrait;
        std::string error;
        EXPECT_TRUE(ReadPicture(work_ / name, &portrait, &error)) << error;
        return portrait;
    }

    TempFolder home_;
    TempFolder work_;
    std::string program_;
};

TEST_F(OperatorProgram, APhotoBecomesAPortraitInEveryFormat) {
    const std::pair<const char*, const char*> cases[] = {
        {"o.jpg", "\xFF\xD8\xFF"}, {"o.png", "\x89PNG"}, {"o.bmp", "BM"}, {"o.tif", "II"}};
    for (const auto& [name, start] : cases) {
        const ProcessResult result = Review({"a.png", "-o", name, "--size", "120x160"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.err, "");
        const Picture portrait = Portrait(name);
        EXPECT_EQ(result.out, std::string(name) + ": " + std::to_string(portrait.width) + "x" +
                                  std::to_string(portrait.height) + ", result 0\n");
        EXPECT_TRUE(portrait.width == 120 || portrait.height == 160) << result.out;
        EXPECT_EQ(work_.Get(name).rfind(start, 0), 0U) << name;
    }
}

TEST_F(OperatorProgram, TheActionsAreThoseAskedFor) {
    EXPECT_EQ(Review({"a.png", "-o", "b.png", "--actions", "none"}).exitCode, 0);
    EXPECT_EQ(Portrait("b.png").width, 320);
    EXPECT_EQ(Portrait("b.png").height, 240);
    EXPECT_EQ(Review({"a.png", "-o", "c.png", "--actions", "crop,background,colour,rotation"}).exitCode, 0);
    EXPECT_GT(Portrait("c.png").height, 240) << "a portrait of 480x860, one side grown";
}

TEST_F(OperatorProgram, WithoutAFaceNothingIsWrittenAndTheExitCodeIs10) {
    work_.Put("empty.png", Encoded(".png", PhotoWithoutFace()));
    ExpectOneLine(Review({"empty.png", "-o", "b.png"}), 10, "empty.png: no face was found");
    ExpectOneLine(Review({"empty.png", "-o", "b.png", "--actions", "none"}), 10, "empty.png: no face was found");
    EXPECT_EQ(work_.Names().size(), 2U);
}

TEST_F(OperatorProgram, WhatIsNoPhotoIsNamed) {
    work_.Put("text.jpg", "no picture");
    work_.Put("cut.png", work_.Get("a.png").substr(0, 200));
    work_.Put("tiny.png", Encoded(".png", ColourfulPicture(1, 1)));
    ExpectOneLine(Review({"absent.jpg", "-o", "b.png"}), 1, "absent.jpg: cannot open: No such file or directory");
    ExpectOneLine(Review({"text.jpg", "-o", "b.png"}), 1, "text.jpg: is not a picture of a known format");
    ExpectOneLine(Review({"tiny.png", "-o", "b.png"}), 1, "tiny.png: the picture is too small");
    ExpectOneLine(Review({".", "-o", "b.png"}), 1, ".: is a folder");
    EXPECT_EQ(Review({"cut.png", "-o", "b.png"}).exitCode, 1);
    EXPECT_EQ(work_.Names().size(), 4U);
}

TEST_F(OperatorProgram, AnExistingOutputStaysWithoutForce) {
    work_.Put("b.png", "before");
    ExpectOneLine(Review({"a.png", "-o", "b.png"}), 1, "the output 'b.png' exists already; --force replaces it");
    EXPECT_EQ(work_.Get("b.png"), "before");
    EXPECT_EQ(Review({"a.png", "-o", "b.png", "--force"}).exitCode, 0);
    EXPECT_GE(Portrait("b.png").height, 860);
    EXPECT_EQ(work_.Names().size(), 2U) << "a temporary file stayed";
}

TEST_F(OperatorProgram, AnOutputThatCannotBeWrittenIsAnError) {
    ExpectOneLine(Review({"a.png", "-o", "absent/b.png"}), 1,
                  "the output 'absent/b.png' cannot write: No such file or directory");
    ExpectOneLine(Review({"a.png", "-o", "."}), 1,
                  "'.' has no extension of a format that can be written (.jpg, .png, .bmp, .tif)");
}

TEST_F(OperatorProgram, NonsenseOnTheCommandLineIsNamed) {
    ExpectOneLine(Review({"a.png", "-o", "b.png", "--actions", "hat"}), 1,
                  "--actions knows crop, background, colour and rotation, or none, not 'hat'");
    for (const char* size : {"1x1", "x", "480", "99999x99999", "480x860x1"}) {
        const ProcessResult result = Review({"a.png", "-o", "b.png", "--size", size});
        EXPECT_EQ(result.exitCode, 1) << size;
        EXPECT_EQ(result.err.rfind("orvane-operator: --size wants WIDTHxHEIGHT", 0), 0U) << result.err;
    }
    EXPECT_EQ(work_.Names().size(), 1U);
}

TEST_F(OperatorProgram, TheLanguageFileIsLookedForInTheLibrarysFolder) {
    work_.Put("words.txt", "3 Gut\n");
    ExpectOneLine(Review({"a.png", "-o", "b.png", "--language", "words.txt"}), 1,
                  "--language: 'words.txt' cannot be opened in the library's folder");
    home_.Put("words.txt", "3 Gut\n");
    EXPECT_EQ(Review({"a.png", "-o", "b.png", "--language", "words.txt"}).exitCode, 0);
}

TEST_F(OperatorProgram, AMissingClassifierIsAnError) {
    std::filesystem::remove(home_ / "Orvane.dat");
    ExpectOneLine(Review({"a.png", "-o", "b.png"}), 1,
                  "a.png: the classifier Orvane.dat beside the program is missing or unusable");
}

TEST_F(OperatorProgram, ALiveSessionWithoutWindowOrCameraIsAnError) {
    // No system has that many, so that no window comes up where there are cameras.
    const ProcessResult result = Run({"live", "--device", "2147483647", "-o", "b.png"});
    ExpectOneLine(result, 1,
                  "camera 2147483647: it can't be started, or there is none, or no window can be opened; "
                  "'orvane-operator devices' lists the cameras");
    ExpectOneLine(Run({"live", "--device", "-1", "-o", "b.png"}), 1,
                  "--device wants a whole number, 0 to 2147483647, not '-1'");
    ExpectOneLine(Run({"live", "-o", "a.png"}), 1, "the output 'a.png' exists already; --force replaces it");
    EXPECT_EQ(work_.Names().size(), 1U);
}

TEST_F(OperatorProgram, TheListOfCamerasHasLinesOrIsAnError) {
    const ProcessResult result = Run({"devices"});
    if (result.exitCode == 0) {
        EXPECT_EQ(result.out.rfind("0  ", 0), 0U) << result.out;
        EXPECT_EQ(result.err, "");
    } else {
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err.rfind("orvane-operator: no camera ", 0), 0U) << result.err;
    }
}

#ifdef ORVANE_PLAYED_CAMERAS
TEST_F(OperatorProgram, WithoutTheCamerasModuleTheListSaysSo) {
    const ProcessResult result = RunProcess(program_, {"devices"}, work_.Path());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    const std::vector<std::string> lines = ProcessResult::Lines(result.err);
    ASSERT_EQ(lines.size(), 2U) << result.err;
    EXPECT_EQ(lines[0], "orvane: working without a camera: " + std::filesystem::canonical(home_.Path()).string() +
                            "/orvane-camera.so is not there");
    EXPECT_EQ(lines[1], "orvane-operator: no camera can be reached: there is no video here");
}

TEST_F(OperatorProgram, TheCamerasModuleLiesBesideTheProgram) {
    std::filesystem::copy_file(ORVANE_PLAYED_CAMERAS, home_ / "orvane-camera.so");
    const ProcessResult result = Run({"devices"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "0  Front  640x480 30/s YUY2\n1  Side  (tells no formats)\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(Run({"devices", "--json"}).out.rfind("{\"index\":0,\"name\":\"Front\"", 0), 0U);
}
#endif

TEST_F(OperatorProgram, WithoutArgumentsTheUsageIsAnErrorAndHelpIsNot) {
    const ProcessResult bare = Run({});
    EXPECT_EQ(bare.exitCode, 1);
    EXPECT_EQ(bare.out, "");
    EXPECT_EQ(bare.err.rfind("usage: orvane-operator review PHOTO -o OUT", 0), 0U) << bare.err;
    const ProcessResult help = Run({"help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(help.err, "");
    for (const char* option : {"orvane-operator live", "orvane-operator devices", "--device", "--json", "--actions",
                               "--size", "--crop-ratio", "--language", "--hidden", "--force", "Exit code"}) {
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
    }
}

TEST_F(OperatorProgram, NamesMayHoldLettersOfEveryScript) {
    const std::string photo = "J\xC3\xB6rg \xD0\x96 \xE2\x82\xAC.png";
    const std::string output = "\xD0\x96 \"quoted\" out.png";
#ifdef _WIN32
    const std::string name = "\xD0\x96 out.png"; // no quotes in names there
#else
    const std::string& name = output;
#endif
    work_.Put(photo, work_.Get("a.png"));
    const ProcessResult result = Review({photo, "-o", name});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out.rfind(name + ": ", 0), 0U) << result.out;
    EXPECT_EQ(Portrait(name).pixels.empty(), false);
}

} // namespace
} // namespace orvane::tools
