#include "tools/support/move_file.h"

#include "tests/tools/temp_folder.h"
#include "tools/support/file_identity.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

TEST(MoveToFreeName, TheFileHasTheNewNameAlone) {
    const TempFolder folder;
    const std::string from = folder.Put("a", "content");
    std::string error;
    EXPECT_EQ(MoveToFreeName(from, folder / "b", &error), MoveEnd::good) << error;
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"b"});
    EXPECT_EQ(folder.Get("b"), "content");
}

TEST(MoveToFreeName, NothingIsReplaced) {
    const TempFolder folder;
    const std::string from = folder.Put("a", "new");
    folder.Put("b", "old");
    std::string error;
    EXPECT_EQ(MoveToFreeName(from, folder / "b", &error), MoveEnd::taken);
    EXPECT_EQ(folder.Get("a"), "new");
    EXPECT_EQ(folder.Get("b"), "old");
}

TEST(MoveToFreeName, AFolderThatIsNotThereIsTold) {
    const TempFolder folder;
    const std::string from = folder.Put("a", "x");
    std::string error;
    EXPECT_EQ(MoveToFreeName(from, folder / "none/b", &error), MoveEnd::failed);
    EXPECT_EQ(error, "cannot be moved: No such file or directory");
    EXPECT_EQ(folder.Get("a"), "x");
}

#ifndef _WIN32
TEST(MoveToFreeName, AnotherDiskIsReachedToo) {
    const std::filesystem::path other = "/dev/shm";
    const TempFolder folder;
    const auto here = IdentifyFile(folder.Path());
    const auto there = IdentifyFile(other.string());
    if (!here || !there || here->first == there->first) {
        GTEST_SKIP() << "there is no other disk";
    }
    const std::filesystem::path target = other / folder.Path().substr(folder.Path().rfind('/') + 1);
    const std::string from = folder.Put("a", "content");
    std::string error;
    EXPECT_EQ(MoveToFreeName(from, target.string(), &error), MoveEnd::good) << error;
    EXPECT_EQ(std::filesystem::file_size(target), 7U);
    EXPECT_TRUE(folder.Names().empty());
    EXPECT_EQ(MoveToFreeName(folder.Put("a", "new"), target.string(), &error), MoveEnd::taken);
    EXPECT_EQ(folder.Get("a"), "new");
    std::filesystem::remove(target);
}
#endif

TEST(RemoveFile, TheFileGoesAndNoneIsNoFailure) {
    const TempFolder folder;
    RemoveFile(folder.Put("a", "x"));
    RemoveFile(folder / "a");
    EXPECT_TRUE(folder.Names().empty());
}

} // namespace
} // namespace orvane::tools
