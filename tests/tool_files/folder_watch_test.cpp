// What is told of a folder while files come and go in it, and whether anybody still writes to them.
#include "tools/support/folder_watch.h"

#include "tests/tools/temp_folder.h"
#include "tools/support/file_stamp.h"

#include <chrono>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

namespace orvane::tools {
namespace {

/// What comes until `done`, or in some seconds.
std::vector<FolderChange> Changes(FolderWatch& watch, const std::function<bool(const FolderChange&)>& done) {
    std::vector<FolderChange> changes;
    for (int i = 0; i < 500 && watch.IsOpen(); ++i) {
        bool missed = false;
        watch.Take(&changes, &missed);
        EXPECT_FALSE(missed);
        if (std::any_of(changes.begin(), changes.end(), done)) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return changes;
}

bool Has(const std::vector<FolderChange>& changes, const std::string& name) {
    return std::any_of(changes.begin(), changes.end(), [&](const auto& change) { return change.name == name; });
}

TEST(FolderWatch, AFileThatIsWrittenIsTold) {
    const TempFolder folder;
    folder.Put("before.jpg", "x");
    FolderWatch watch;
    std::string error;
    ASSERT_TRUE(watch.Open(folder.Path(), &error)) << error;
    folder.Put("ä b.jpg", "x");
    const auto changes = Changes(watch, [](const auto& change) { return change.name == "ä b.jpg"; });
    EXPECT_TRUE(Has(changes, "ä b.jpg"));
    EXPECT_FALSE(Has(changes, "before.jpg"));
}

TEST(FolderWatch, AFileThatIsMovedInIsToldAsComplete) {
    const TempFolder elsewhere;
    const TempFolder folder;
    FolderWatch watch;
    std::string error;
    ASSERT_TRUE(watch.Open(folder.Path(), &error)) << error;
    std::filesystem::rename(elsewhere.Put("a.part", "x"), folder / "a.part");
    std::filesystem::rename(folder / "a.part", folder / "a.jpg");
    const auto changes = Changes(watch, [](const auto& change) { return change.name == "a.jpg" && change.isComplete; });
    EXPECT_TRUE(Has(changes, "a.jpg"));
}

TEST(FolderWatch, AFolderThatGoesEndsTheWatchAndCanBeWatchedWhenItIsBack) {
    const TempFolder base;
    const std::string path = base / "in";
    std::filesystem::create_directory(path);
    FolderWatch watch;
    std::string error;
    ASSERT_TRUE(watch.Open(path, &error)) << error;
    std::filesystem::rename(path, base / "away");
    Changes(watch, [](const auto&) { return false; });
    EXPECT_FALSE(watch.IsOpen());
    EXPECT_FALSE(watch.Open(path, &error));
    EXPECT_EQ(error, "cannot be watched: No such file or directory");
    std::filesystem::rename(base / "away", path);
    ASSERT_TRUE(watch.Open(path, &error)) << error;
    base.Put("in/a.jpg", "x");
    EXPECT_TRUE(Has(Changes(watch, [](const auto& change) { return change.name == "a.jpg"; }), "a.jpg"));
}

TEST(FolderWatch, AnotherFolderInItsPlaceEndsTheWatch) {
    const TempFolder base;
    const std::string above = base / "above";
    std::filesystem::create_directories(above + "/in");
    std::filesystem::create_directories(base / "other/in");
    FolderWatch watch;
    std::string error;
    ASSERT_TRUE(watch.Open(above + "/in", &error)) << error;
#ifdef _WIN32
    GTEST_SKIP() << "a folder above one that is open does not move";
#endif
    std::filesystem::rename(above, base / "gone"); // told by no event of the folder's own
    std::filesystem::rename(base / "other", above);
    Changes(watch, [](const auto&) { return false; });
    EXPECT_FALSE(watch.IsOpen());
}

#ifndef _WIN32
TEST(FolderWatch, MoreThanTheSystemKeepsIsToldAsMissed) {
    const TempFolder folder;
    FolderWatch watch;
    std::string error;
    ASSERT_TRUE(watch.Open(folder.Path(), &error)) << error;
    int most = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
    if (most <= 0 || most > 100000) GTEST_SKIP() << "the system keeps " << most << " events";
    // Opened and closed in turn: the same event twice in a row would be told once.
    for (int i = 0; i <= most; ++i) std::ofstream(folder / std::to_string(i % 2), std::ios::app);
    bool missed = false;
    std::vector<FolderChange> changes;
    EXPECT_TRUE(watch.Take(&changes, &missed));
    EXPECT_TRUE(missed);
    missed = false;
    EXPECT_TRUE(watch.Take(&changes, &missed));
    EXPECT_FALSE(missed);
}
#endif

TEST(FileStamp, OnlyARegularFileHasOneAndEachStateHasItsOwn) {
    const TempFolder folder;
    EXPECT_FALSE(StampOf(folder.Path()).has_value());
    EXPECT_FALSE(StampOf(folder / "none").has_value());
    const std::string path = folder.Put("a", "x");
    const auto first = StampOf(path);
    ASSERT_TRUE(first.has_value());
    EXPECT_EQ(StampOf(path), first);
    folder.Put("a", "xy");
    EXPECT_NE(StampOf(path), first);
    folder.Put("b", "x");
    EXPECT_NE(StampOf(folder / "b"), first);
}

TEST(FileStamp, AWriterIsSeenAsLongAsItHasTheFileOpen) {
    const TempFolder folder;
    const std::string path = folder / "a.jpg";
    std::ofstream writer(TempFolder::Native(path), std::ios::binary);
    writer << "x" << std::flush;
    if (WritersOf(path) == Writers::unknown) GTEST_SKIP() << "the file system does not tell";
    EXPECT_EQ(WritersOf(path), Writers::some);
    writer.close();
    EXPECT_EQ(WritersOf(path), Writers::none);
    EXPECT_EQ(WritersOf(folder / "none"), Writers::unknown);
    const std::ifstream reader(TempFolder::Native(path), std::ios::binary); // stands in nobody's way
    EXPECT_EQ(WritersOf(path), Writers::none);
}

} // namespace
} // namespace orvane::tools
