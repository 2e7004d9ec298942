// The built program watching a folder, on every system.
#include "tests/tools/placed_tool.h"
#include "tools/support/child_process.h"

#include <chrono>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

namespace orvane::tools {
namespace {

class WatchedFolder : public testing::Test, protected PlacedTool {
protected:
    WatchedFolder() : PlacedTool(ORVANE_TOOL) {
        Make("in");
        Make("out");
    }

    void Start(const std::vector<std::string>& size = {"--size", "80x100"}) {
        std::string error;
        std::vector<std::string> command{File(), "watch", Work() / "in", "-o", Work() / "out", "--json"};
        command.insert(command.end(), size.begin(), size.end());
        ASSERT_TRUE(watch_.Start(command, &error)) << error;
    }

    /// The next line that the watch tells, once it comes.
    std::string Told() {
        std::string line;
        for (char c = 0; watch_.Read(&c, 1) && c != '\n';) line += c;
        return line;
    }

    bool Comes(const std::string& name) const {
        for (int i = 0; i < 3000 && !Has(name); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return Has(name);
    }

    ChildProcess watch_;
};

TEST_F(WatchedFolder, PhotosBecomePortraitsAsTheyArrive) {
    PutPhoto("in/early.png");
    Start();
    EXPECT_TRUE(Comes("out/early.png"));
    EXPECT_NE(Told().find("early.png"), std::string::npos);
    PutPhoto("in/ä b.png", 3);
    EXPECT_NE(Told().find("ä b.png"), std::string::npos);
    EXPECT_TRUE(Has("out/ä b.png"));
    PutPhoto("moving", 6);
    std::filesystem::rename(TempFolder::Native(Work() / "moving"), TempFolder::Native(Work() / "in/moved.png"));
    EXPECT_NE(Told().find("moved.png"), std::string::npos);
    EXPECT_TRUE(Has("out/moved.png"));
    EXPECT_TRUE(Has("in/moved.png"));
}

TEST_F(WatchedFolder, PhotosBecomePortraitsOfADocument) {
    Work().Put("in/a.png", Encoded(".png", PhotoWithSquare(900, 900, 400, 400)));
    Start({"--document", "us-visa"});
    ASSERT_TRUE(Comes("out/a.png"));
    EXPECT_NE(Told().find("\"document\":\"us-visa\""), std::string::npos);
    Picture portrait;
    std::string error;
    ASSERT_TRUE(ReadPicture(Work() / "out/a.png", &portrait, &error)) << error;
    EXPECT_EQ(portrait.width, 600);
    EXPECT_EQ(portrait.height, 600);
}

TEST_F(WatchedFolder, APhotoThatIsBeingWrittenWaits) {
    Start();
    const std::string photo = PhotoBytes(0);
    {
        std::ofstream writer(TempFolder::Native(Work() / "in/slow.png"), std::ios::binary);
        writer << photo.substr(0, 200) << std::flush;
        PutPhoto("in/quick.png", 3);
        EXPECT_NE(Told().find("quick.png"), std::string::npos);
        std::this_thread::sleep_for(std::chrono::milliseconds(2500));
        EXPECT_FALSE(Has("out/failed"));
        writer << photo.substr(200);
    }
    EXPECT_NE(Told().find("\"output\":"), std::string::npos);
    EXPECT_TRUE(Has("out/slow.png"));
}

TEST_F(WatchedFolder, AFileThatGivesNoPortraitIsMovedWithItsReason) {
    Make("out/failed");
    Work().Put("out/failed/bad.jpg", "of an earlier day");
    Start();
    Work().Put("in/bad.jpg", "no picture");
    EXPECT_NE(Told().find("is not a picture of a known format"), std::string::npos);
    EXPECT_EQ(Work().Get("out/failed/bad-2.jpg"), "no picture");
    EXPECT_EQ(Work().Get("out/failed/bad-2.jpg.txt"), "is not a picture of a known format\n");
    EXPECT_EQ(Work().Get("out/failed/bad.jpg"), "of an earlier day");
    EXPECT_FALSE(Has("in/bad.jpg"));
}

TEST_F(WatchedFolder, WhatWasDoneIsNotDoneAgain) {
    PutPhoto("in/a.png");
    Start();
    EXPECT_EQ(Told().find("\"kept\""), std::string::npos);
    watch_.Kill();
    watch_.Wait();
    PutPhoto("in/b.png", 3);
    Start();
    const std::string one = Told(), other = Told(); // whichever is ready first
    const bool keptFirst = one.find("\"kept\":true") != std::string::npos;
    const std::string &kept = keptFirst ? one : other, &made = keptFirst ? other : one;
    EXPECT_NE(kept.find("\"kept\":true"), std::string::npos) << kept;
    EXPECT_NE(kept.find("a.png"), std::string::npos) << kept;
    EXPECT_EQ(made.find("\"kept\""), std::string::npos) << made;
    EXPECT_NE(made.find("b.png"), std::string::npos) << made;
    PutPhoto("in/a.png", 6); // another photo of that name
    EXPECT_EQ(Told().find("\"kept\""), std::string::npos);
    EXPECT_FALSE(Has("out/failed"));
}

} // namespace
} // namespace orvane::tools
