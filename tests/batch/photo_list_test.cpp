// Which photographs a run takes, under which names and in which order.
#include "tools/batch/photo_list.h"

#include "tests/tools/temp_folder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using Names = std::vector<std::string>;

class PhotoList : public testing::Test {
protected:
    void Make(const std::string& name) const {
        std::filesystem::create_directories(TempFolder::Native(folder_ / name));
    }
    void List(const Names& inputs, bool recursive, const std::string& output = "") {
        photos_.clear();
        remarks_.clear();
        ListPhotos({inputs, recursive, output}, &photos_, &remarks_);
    }
    Names ListedNames() const {
        Names names;
        for (const ListedPhoto& photo : photos_) names.push_back(photo.name);
        return names;
    }

    TempFolder folder_;
    std::vector<ListedPhoto> photos_;
    std::vector<ListRemark> remarks_;
};

TEST_F(PhotoList, OfAFolderThePhotographsAreTakenInTheOrderOfTheirNames) {
    for (const char* name : {"b.jpg", "a.PNG", "C.jpeg", "notes.txt", "Thumbs.db", ".hidden.jpg", "noname", "z.webp"}) {
        folder_.Put(name, "x");
    }
    Make("sub.jpg");
    List({folder_.Path()}, false);
    EXPECT_EQ(ListedNames(), (Names{"C.jpeg", "a.PNG", "b.jpg", "z.webp"}));
    EXPECT_EQ(photos_[1].path, folder_ / "a.PNG");
    EXPECT_EQ(photos_[1].folder, "");
    EXPECT_TRUE(remarks_.empty());
}

TEST_F(PhotoList, FoldersInFoldersAreWalkedOnlyWhereThatIsAsked) {
    Make("b/c");
    Make("a");
    Make(".git");
    for (const char* name : {"z.jpg", "a/2.jpg", "a/1.jpg", "b/c/x.jpg", ".git/y.jpg"}) folder_.Put(name, "x");
    List({folder_.Path()}, false);
    EXPECT_EQ(ListedNames(), Names{"z.jpg"});
    List({folder_.Path()}, true);
    EXPECT_EQ(ListedNames(), (Names{"z.jpg", "a/1.jpg", "a/2.jpg", "b/c/x.jpg"}));
    EXPECT_EQ(photos_[3].folder, "b/c");
    EXPECT_EQ(photos_[3].path, folder_ / "b/c/x.jpg");
}

TEST_F(PhotoList, NamesDoNotDependOnHowTheFolderIsWritten) {
    Make("in");
    folder_.Put("in/a.jpg", "x");
    for (const std::string& in : {folder_ / "in", folder_ / "in/", folder_ / "./in"}) {
        List({in}, true);
        EXPECT_EQ(ListedNames(), Names{"a.jpg"}) << in;
    }
}

TEST_F(PhotoList, FilesThatAreGivenAreTakenWhateverTheyAre) {
    List({"x/notes.txt", "absent.jpg", "/one/two/p.jpg", "./q.jpg", "../r.jpg"}, false);
    EXPECT_EQ(ListedNames(), (Names{"x/notes.txt", "absent.jpg", "/one/two/p.jpg", "./q.jpg", "../r.jpg"}));
    const char* const folders[] = {"x", "", "two", "", ""};
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(photos_[i].folder, folders[i]) << photos_[i].path;
}

TEST_F(PhotoList, AFolderGivenTwiceIsListedOnce) {
    folder_.Put("a.jpg", "x");
    List({folder_.Path(), folder_.Path() + "/"}, false);
    EXPECT_EQ(photos_.size(), 1U);
    ASSERT_EQ(remarks_.size(), 1U);
    EXPECT_FALSE(remarks_[0].isError);
}

TEST_F(PhotoList, TheOutputFolderIsNoInputUnlessItIsGiven) {
    Make("out");
    folder_.Put("a.jpg", "x");
    folder_.Put("out/a.png", "x");
    List({folder_.Path()}, true, folder_ / "out");
    EXPECT_EQ(ListedNames(), Names{"a.jpg"});
    EXPECT_TRUE(remarks_.empty());
    List({folder_ / "out"}, true, folder_ / "out");
    EXPECT_EQ(ListedNames(), Names{"a.png"});
}

#ifndef _WIN32
TEST_F(PhotoList, LinksInCirclesEnd) {
    Make("a/b");
    folder_.Put("a/b/p.jpg", "x");
    std::filesystem::create_directory_symlink("..", folder_ / "a/b/up");
    std::filesystem::create_directory_symlink(".", folder_ / "a/self");
    List({folder_.Path()}, true);
    EXPECT_EQ(ListedNames(), Names{"a/b/p.jpg"});
    ASSERT_EQ(remarks_.size(), 2U);
    EXPECT_EQ(remarks_[0].path, folder_ / "a/b/up");
    EXPECT_EQ(remarks_[0].text, "leads to a folder that is listed already, and is passed over");
    EXPECT_FALSE(remarks_[0].isError);
}

TEST_F(PhotoList, LinksToFilesAndFoldersElsewhereAreFollowed) {
    Make("in");
    Make("far");
    folder_.Put("far/p.jpg", "x");
    std::filesystem::create_directory_symlink("../far", folder_ / "in/far");
    std::filesystem::create_symlink("../far/p.jpg", folder_ / "in/q.jpg");
    std::filesystem::create_symlink("nowhere", folder_ / "in/r.jpg");
    List({folder_ / "in"}, true);
    EXPECT_EQ(ListedNames(), (Names{"q.jpg", "r.jpg", "far/p.jpg"}));
}

TEST_F(PhotoList, NamesMayBeAnyBytes) {
    for (const char* name : {"a\nb.jpg", "\xFF\xFE.jpg", " .jpg"}) folder_.Put(name, "x");
    List({folder_.Path()}, false);
    EXPECT_EQ(ListedNames(), (Names{" .jpg", "a\nb.jpg", "\xFF\xFE.jpg"}));
}
#endif

TEST_F(PhotoList, AListIsTakenApartByLinesOrByZeroBytes) {
    EXPECT_EQ(PathsOfList("a.jpg\nb c.jpg\r\n\n./d"), (Names{"a.jpg", "b c.jpg", "./d"}));
    EXPECT_EQ(PathsOfList(std::string("a\nb\0c\r\0\0d", 10)), (Names{"a\nb", "c\r", "d"}));
    EXPECT_TRUE(PathsOfList("").empty());
    EXPECT_TRUE(PathsOfList("\n\n").empty());
}

} // namespace
} // namespace orvane::tools
