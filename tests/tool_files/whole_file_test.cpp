// Output files are there completely or not at all, and nothing existing is replaced unasked.
#include "tools/support/whole_file.h"

#include "tests/tools/temp_folder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Names = std::vector<std::string>;

TEST(WholeFile, AFileComesBackAsWritten) {
    const TempFolder folder;
    const std::string content("a\0b\xFF\n", 5);
    std::string error;
    ASSERT_TRUE(WriteWholeFile(folder / "f", content, false, &error)) << error;
    std::string back;
    ASSERT_TRUE(ReadWholeFile(folder / "f", &back, &error)) << error;
    EXPECT_EQ(back, content);
    EXPECT_EQ(folder.Names(), Names{"f"}) << "a temporary file stayed";
}

TEST(WholeFile, AnExistingFileStaysWithoutForce) {
    const TempFolder folder;
    folder.Put("f", "before");
    std::string error;
    EXPECT_FALSE(WriteWholeFile(folder / "f", "after", false, &error));
    EXPECT_EQ(error, "exists already; --force replaces it");
    EXPECT_EQ(folder.Get("f"), "before");
    EXPECT_EQ(folder.Names(), Names{"f"});
}

TEST(WholeFile, ForceReplacesAFile) {
    const TempFolder folder;
    folder.Put("f", "before");
    std::string error;
    EXPECT_TRUE(WriteWholeFile(folder / "f", "after", true, &error)) << error;
    EXPECT_EQ(folder.Get("f"), "after");
    EXPECT_EQ(folder.Names(), Names{"f"});
}

TEST(WholeFile, AFolderThatIsNotThereIsAnError) {
    const TempFolder folder;
    std::string error;
    EXPECT_FALSE(WriteWholeFile(folder / "absent/f", "x", false, &error));
    EXPECT_EQ(error, "cannot write: No such file or directory");
}

TEST(WholeFile, AFolderIsNeverReplacedNorRead) {
    const TempFolder folder;
    std::filesystem::create_directory(folder / "d");
    std::string content = "before";
    std::string error;
    for (const bool force : {false, true}) {
        EXPECT_FALSE(WriteWholeFile(folder / "d", "x", force, &error));
        EXPECT_EQ(error, "is a folder");
        EXPECT_FALSE(CanWriteWholeFile(folder / "d", force, &error));
        EXPECT_EQ(error, "is a folder");
    }
    EXPECT_FALSE(ReadWholeFile(folder / "d", &content, &error));
    EXPECT_EQ(error, "is a folder");
    EXPECT_TRUE(content.empty());
    EXPECT_TRUE(std::filesystem::is_directory(folder / "d"));
    EXPECT_EQ(folder.Names(), Names{"d"});
}

TEST(WholeFile, WhetherAFileCanBeWrittenIsToldBeforeAndNothingStays) {
    const TempFolder folder;
    std::string error;
    EXPECT_TRUE(CanWriteWholeFile(folder / "f", false, &error)) << error;
    EXPECT_TRUE(folder.Names().empty());
    folder.Put("f", "before");
    EXPECT_FALSE(CanWriteWholeFile(folder / "f", false, &error));
    EXPECT_EQ(error, "exists already; --force replaces it");
    EXPECT_TRUE(CanWriteWholeFile(folder / "f", true, &error)) << error;
    EXPECT_FALSE(CanWriteWholeFile(folder / "absent/f", false, &error));
    EXPECT_EQ(error, "cannot write: No such file or directory");
    EXPECT_EQ(folder.Names(), Names{"f"});
    EXPECT_EQ(folder.Get("f"), "before");
}

TEST(WholeFile, AMissingFileIsNamedAsSuch) {
    const TempFolder folder;
    std::string content = "before";
    std::string error;
    EXPECT_FALSE(ReadWholeFile(folder / "absent", &content, &error));
    EXPECT_EQ(error, "cannot open: No such file or directory");
    EXPECT_TRUE(content.empty());
}

TEST(WholeFile, AnEmptyAndALargeFileComeBack) {
    const TempFolder folder;
    std::string large;
    for (int i = 0; i < 300000; ++i) large += static_cast<char>(i % 251);
    for (const std::string& content : {std::string(), large}) {
        std::string back = "before";
        std::string error;
        ASSERT_TRUE(WriteWholeFile(folder / "f", content, true, &error)) << error;
        ASSERT_TRUE(ReadWholeFile(folder / "f", &back, &error)) << error;
        EXPECT_EQ(back, content);
    }
}

} // namespace
} // namespace orvane::tools
