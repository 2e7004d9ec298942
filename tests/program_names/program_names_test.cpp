// The built programs in folders, and over photos, of all names: they are found, written and told as they are.
#include "tests/support/folder_names.h"
#include "tests/tools/bright_square.h"
#include "tests/tools/process.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;

std::string BytesOf(const char8_t* text) { return reinterpret_cast<const char*>(text); }

/// Programs, library and classifier in a folder of some name, photos in another one of that name.
class Place {
public:
    explicit Place(const std::string& name) : home(home_ / name), work(work_ / name) {
        std::filesystem::create_directory(TempFolder::Native(home));
        std::filesystem::create_directory(TempFolder::Native(work));
        for (const char* file : {ORVANE_TOOL, ORVANE_OPERATOR, ORVANE_LIBRARY_FILE}) {
            std::filesystem::copy_file(file, TempFolder::Native(home + "/" + FileName(file)));
        }
        home_.Put(name + "/Orvane.dat", BrightSquareClassifier());
    }

    /// What a program says, without the library's lines about a window that it misses.
    ProcessResult Run(const char* program, const Arguments& arguments) const {
        ProcessResult result = RunProcess(home + "/" + FileName(program), arguments, work);
        for (std::size_t at = 0; (at = result.err.find("orvane: working without a ")) != std::string::npos;) {
            const std::size_t end = result.err.find("is not there\n", at);
            result.err.erase(at, end == std::string::npos ? end : end + 13 - at);
        }
        return result;
    }

    /// Encoded once: the pixels do not matter here.
    void PutPhoto(const std::string& name) const {
        static const std::string photo = Encoded(".png", PhotoWithSquare(320, 240, 100, 80));
        std::ofstream(TempFolder::Native(work + "/" + name), std::ios::binary) << photo;
    }
    bool HasPortrait(const std::string& name) const {
        Picture portrait;
        std::string error;
        return ReadPicture(work + "/" + name, &portrait, &error) && portrait.width > 0;
    }

private:
    static std::string FileName(const char* path) { return std::filesystem::path(path).filename().string(); }

    TempFolder home_;
    TempFolder work_;

public:
    const std::string home;
    const std::string work;
};

TEST(ProgramNames, PhotosAndFoldersOfEveryScriptAreReadWrittenAndTold) {
    for (const test::FolderName& folder : test::kFolderNames) {
        SCOPED_TRACE(folder.what);
        const std::string name = BytesOf(folder.text);
        const Place place(name);
        place.PutPhoto(name + ".png");
        std::filesystem::create_directory(TempFolder::Native(place.work + "/out " + name));

        const ProcessResult made =
            place.Run(ORVANE_TOOL, {"portrait", name + ".png", "-o", "out " + name, "--size", "120x160"});
        EXPECT_EQ(made.exitCode, 0) << made.err;
        EXPECT_EQ(made.err, "");
        EXPECT_EQ(made.out.rfind(name + ".png: ", 0), 0U) << made.out;
        EXPECT_TRUE(place.HasPortrait("out " + name + "/" + name + ".png"));

        const ProcessResult json = place.Run(ORVANE_TOOL, {"detect", name + ".png", "--json"});
        EXPECT_EQ(json.exitCode, 0) << json.err;
        EXPECT_NE(json.out.find("\"" + name + ".png\""), std::string::npos) << json.out;

        const ProcessResult missing = place.Run(ORVANE_TOOL, {"detect", name + ".jpg"});
        EXPECT_EQ(missing.exitCode, 1);
        EXPECT_EQ(missing.err, "orvane: " + name + ".jpg: cannot open: No such file or directory\n");

        const ProcessResult reviewed = place.Run(
            ORVANE_OPERATOR, {"review", "--hidden", place.work + "/" + name + ".png", "-o", "b " + name + ".png"});
        EXPECT_EQ(reviewed.exitCode, 0) << reviewed.err;
        EXPECT_EQ(reviewed.err, "");
        EXPECT_EQ(reviewed.out.rfind("b " + name + ".png: ", 0), 0U) << reviewed.out;
        EXPECT_TRUE(place.HasPortrait("b " + name + ".png"));
    }
}

TEST(ProgramNames, APathOfManyFoldersIsReadAndWritten) {
    const Place place("deep");
    std::string folder;
    // Windows takes 259 characters of a plain path, and keeps some free for the names in its folders.
    while (place.work.size() + folder.size() < 190) {
        folder += "dddddddddddddddddddddddddddd/";
        std::filesystem::create_directory(TempFolder::Native(place.work + "/" + folder));
    }
    place.PutPhoto(folder + "a.png");
    const ProcessResult made = place.Run(ORVANE_TOOL, {"portrait", folder + "a.png", "-o", folder + "b.png"});
    EXPECT_EQ(made.exitCode, 0) << made.err;
    EXPECT_TRUE(place.HasPortrait(folder + "b.png"));
}

#ifdef _WIN32

std::vector<std::string> PhotosTold(const ProcessResult& result) {
    std::vector<std::string> photos;
    for (const std::string& line : ProcessResult::Lines(result.out)) photos.push_back(line.substr(0, line.find(": ")));
    return photos;
}

// There the programs themselves, not the shell, find what a pattern stands for.
TEST(ProgramNames, APatternStandsForItsFilesInOrder) {
    const std::string chinese = BytesOf(u8"\u8BC1\u4EF6.png");
    const Place place("p");
    for (const std::string& name : {std::string("b.png"), std::string("a.png"), chinese}) place.PutPhoto(name);
    std::filesystem::create_directory(TempFolder::Native(place.work + "/c.png"));
    std::filesystem::create_directory(TempFolder::Native(place.work + "/in"));
    place.PutPhoto("in/d.png");
    using Names = std::vector<std::string>;
    EXPECT_EQ(PhotosTold(place.Run(ORVANE_TOOL, {"detect", "*.png"})), (Names{"a.png", "b.png", chinese}));
    EXPECT_EQ(PhotosTold(place.Run(ORVANE_TOOL, {"detect", "?.png"})), (Names{"a.png", "b.png"}));
    EXPECT_EQ(PhotosTold(place.Run(ORVANE_TOOL, {"detect", "in\\*.png"})), Names{"in\\d.png"});
    EXPECT_EQ(PhotosTold(place.Run(ORVANE_TOOL, {"detect", "in/*"})), Names{"in/d.png"});
    const ProcessResult none = place.Run(ORVANE_TOOL, {"detect", "*.jpg"});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_EQ(none.err.rfind("orvane: *.jpg: cannot open", 0), 0U) << none.err;
}

#else

TEST(ProgramNames, OnLinuxNamesMayBeAnyBytes) {
    for (const std::string name : {"\xFF\xFE", "\xC3 \xA4", "\xED\xA0\x80"}) {
        SCOPED_TRACE(::testing::PrintToString(name));
        const Place place(name);
        place.PutPhoto(name + ".png");
        const ProcessResult made =
            place.Run(ORVANE_TOOL, {"portrait", name + ".png", "-o", "t" + name + ".png", "--size", "480x860"});
        EXPECT_EQ(made.exitCode, 0) << made.err;
        EXPECT_EQ(made.err, "");
        EXPECT_EQ(made.out.rfind(name + ".png: ", 0), 0U) << made.out;
        EXPECT_TRUE(place.HasPortrait("t" + name + ".png"));
        const ProcessResult reviewed =
            place.Run(ORVANE_OPERATOR, {"review", "--hidden", name + ".png", "-o", "o" + name + ".png"});
        EXPECT_EQ(reviewed.exitCode, 0) << reviewed.err;
        EXPECT_EQ(reviewed.out.rfind("o" + name + ".png: ", 0), 0U) << reviewed.out;
        EXPECT_TRUE(place.HasPortrait("o" + name + ".png"));
    }
}

#endif

} // namespace
} // namespace orvane::tools
