// Output files where the system has links, pipes and permissions.
#include "tools/support/whole_file.h"

#include "tests/tools/temp_folder.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane::tools {
namespace {

using Names = std::vector<std::string>;

TEST(LinuxWholeFile, ANewFileTakesTheUsualPermissions) {
    const TempFolder folder;
    const mode_t before = ::umask(027);
    std::string error;
    EXPECT_TRUE(WriteWholeFile(folder / "f", "x", false, &error)) << error;
    ::umask(before);
    struct stat status {};
    ASSERT_EQ(::stat((folder / "f").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST(LinuxWholeFile, ALinkThatLeadsNowhereCountsAsExisting) {
    const TempFolder folder;
    std::filesystem::create_symlink("nowhere", folder / "f");
    std::string error;
    EXPECT_FALSE(WriteWholeFile(folder / "f", "x", false, &error));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "f"));
    EXPECT_EQ(folder.Names(), Names{"f"});
}

TEST(LinuxWholeFile, FoldersDevicesAndPipesAreNeverReplaced) {
    const TempFolder folder;
    std::filesystem::create_directory(folder / "d");
    ASSERT_EQ(::mkfifo((folder / "p").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/null", folder / "n");
    std::string error;
    for (const bool force : {false, true}) {
        EXPECT_FALSE(WriteWholeFile(folder / "d", "x", force, &error));
        EXPECT_EQ(error, "is a folder");
        EXPECT_FALSE(WriteWholeFile(folder / "p", "x", force, &error));
        EXPECT_EQ(error, "is not a regular file");
        EXPECT_FALSE(WriteWholeFile(folder / "n", "x", force, &error));
        EXPECT_EQ(error, "is not a regular file");
    }
    EXPECT_TRUE(std::filesystem::is_fifo(folder / "p"));
    EXPECT_EQ(folder.Names().size(), 3U);
}

TEST(LinuxWholeFile, WhatIsNoRegularFileCannotBeWrittenAndIsToldBefore) {
    const TempFolder folder;
    ASSERT_EQ(::mkfifo((folder / "p").c_str(), 0600), 0);
    std::filesystem::create_symlink("nowhere", folder / "l");
    std::string error;
    EXPECT_FALSE(CanWriteWholeFile(folder / "p", true, &error));
    EXPECT_EQ(error, "is not a regular file");
    EXPECT_FALSE(CanWriteWholeFile(folder / "l", false, &error));
    EXPECT_EQ(error, "exists already; --force replaces it");
    EXPECT_FALSE(CanWriteWholeFile("/proc/f", false, &error)); // a folder that root too can't write to
    EXPECT_EQ(error, "cannot write: No such file or directory");
}

TEST(LinuxWholeFile, AWriteThatFailsHalfWayLeavesNothingAndKeepsTheOldFile) {
    const TempFolder folder;
    folder.Put("old", "before");
    const std::string content(1 << 20, 'x');
    // A child process may write no more than a few blocks, as on a disk that is full.
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit limit{65536, 65536};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
        std::string error;
        const bool written = WriteWholeFile(folder / "new", content, false, &error) ||
                             WriteWholeFile(folder / "old", content, true, &error);
        ::_exit(written ? 1 : (error == "cannot write: File too large" ? 0 : 2));
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "1: a file was written, 2: another error was told";
    EXPECT_EQ(folder.Names(), Names{"old"});
    EXPECT_EQ(folder.Get("old"), "before");
}

TEST(LinuxWholeFile, OfSeveralWritersExactlyOneGetsAFreeName) {
    const TempFolder folder;
    for (int round = 0; round < 8; ++round) {
        const std::string name = std::to_string(round);
        const std::string path = folder / name;
        // Processes, since the temporary names go by the process.
        std::vector<pid_t> children;
        for (int i = 0; i < 4; ++i) {
            const pid_t child = ::fork();
            if (child == 0) {
                std::string error;
                ::_exit(WriteWholeFile(path, std::string(1000, static_cast<char>('a' + i)), false, &error) ? 1 : 0);
            }
            children.push_back(child);
        }
        int winners = 0;
        for (const pid_t child : children) {
            int status = 0;
            ASSERT_EQ(::waitpid(child, &status, 0), child);
            winners += WEXITSTATUS(status);
        }
        EXPECT_EQ(winners, 1);
        const std::string content = folder.Get(name);
        EXPECT_EQ(content, std::string(1000, content.at(0)));
    }
}

TEST(LinuxWholeFile, ReadingRefusesWhatIsNoRegularFileWithoutWaiting) {
    const TempFolder folder;
    ASSERT_EQ(::mkfifo((folder / "p").c_str(), 0600), 0);
    std::string content = "before";
    std::string error;
    EXPECT_FALSE(ReadWholeFile(folder / "p", &content, &error));
    EXPECT_EQ(error, "is not a regular file");
    EXPECT_FALSE(ReadWholeFile(folder.Path(), &content, &error));
    EXPECT_EQ(error, "is a folder");
    EXPECT_TRUE(content.empty());
}

} // namespace
} // namespace orvane::tools
