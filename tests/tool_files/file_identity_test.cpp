// Names of files as the system takes them.
#include "tools/support/file_identity.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

std::string Name(const std::string& path) { return path.substr(NameStart(path)); }

TEST(FileNames, ANameBeginsBehindItsFolders) {
    EXPECT_EQ(Name("a.jpg"), "a.jpg");
    EXPECT_EQ(Name("x/y/a.jpg"), "a.jpg");
    EXPECT_EQ(Name("x/"), "");
}

#ifdef _WIN32
TEST(FileNames, FoldersOfWindowsEndWithABackslashOrAColon) {
    EXPECT_EQ(Name("x\\a.jpg"), "a.jpg");
    EXPECT_EQ(Name("x/y\\a.jpg"), "a.jpg");
    EXPECT_EQ(Name("c:a.jpg"), "a.jpg");
}

TEST(FileNames, WindowsTakesLettersOfBothCasesForOneName) {
    EXPECT_EQ(NameKey("Ann.PNG"), NameKey("aNN.png"));
    EXPECT_EQ(NameKey("\xC3\x84.png"), NameKey("\xC3\xA4.png"));
    EXPECT_NE(NameKey("a.png"), NameKey("b.png"));
}
#else
TEST(FileNames, EveryCharacterButASlashBelongsToAName) {
    EXPECT_EQ(Name("x\\a:b.jpg"), "x\\a:b.jpg");
    EXPECT_NE(NameKey("Ann.png"), NameKey("ann.png"));
}
#endif

} // namespace
} // namespace orvane::tools
