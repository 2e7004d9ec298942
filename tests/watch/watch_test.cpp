// A watched folder as its users see it: what becomes of photographs that arrive.
#include "tests/watch/watch_fixture.h"

namespace orvane::tools {
namespace {

using Watch = WatchFixture;

TEST_F(Watch, PhotographsThatAreThereOrArriveBecomePortraits) {
    PutPhoto("early.png", 1);
    Start();
    PutPhoto("written.png", 2);
    work_.Put("moving", Photo(3));
    std::filesystem::rename(work_ / "moving", In("moved.png"));
    work_.Put("linked", Photo(4));
    std::filesystem::create_hard_link(work_ / "linked", In("linked.PNG"));
    PutPhoto("a b'\"\n\xFF.png", 5);
    const Names all{"a b'\"\n\xFF.png", "early.png", "linked.png", "moved.png", "written.png"};
    EXPECT_TRUE(Comes([&] { return Portraits() == all; })) << Log();
    EXPECT_EQ(Stop(), 0);
    EXPECT_TRUE(Exists(In("early.png"))); // they stay
    EXPECT_TRUE(Exists(In("written.png")));
    EXPECT_EQ(Log(), "orvane: watching 'in'\n");
    const Names lines = ProcessResult::Lines(Told());
    EXPECT_EQ(lines.size(), 5U) << Told();
    EXPECT_NE(Told().find("in/written.png: face at "), std::string::npos);
}

TEST_F(Watch, WhatGivesNoPortraitIsMovedWithItsReason) {
    std::filesystem::create_directory(Failed(""));
    work_.Put("out/failed/bad.jpg", "of an earlier day");
    Start({"--json"});
    work_.Put("in/bad.jpg", "no picture");
    work_.Put("in/\xFF'.jpg", "no picture");
    work_.Put("in/" + std::string(251, 'x') + ".jpg", "no picture");
    work_.Put("in/empty.png", "");
    work_.Put("in/faceless.png", Encoded(".png", PhotoWithoutFace()));
    const std::string longest = std::string(200, 'x') + ".jpg";
    for (const std::string& name : Names{"bad-2.jpg", "\xFF'.jpg", longest, "empty.png", "faceless.png"}) {
        EXPECT_TRUE(Appears(Failed(name))) << name << "\n" << Log();
        EXPECT_TRUE(Exists(Failed(name + ".txt"))) << name;
    }
    EXPECT_TRUE(Comes([&] { return ProcessResult::Lines(Told()).size() == 5; })) << Told();
    EXPECT_EQ(Stop(SIGINT), 0);
    EXPECT_EQ(work_.Get("out/failed/bad.jpg"), "of an earlier day");
    EXPECT_EQ(work_.Get("out/failed/bad-2.jpg"), "no picture");
    EXPECT_EQ(work_.Get("out/failed/bad-2.jpg.txt"), "is not a picture of a known format\n");
    EXPECT_EQ(work_.Get("out/failed/faceless.png.txt"), "no face was found\n");
    EXPECT_EQ(Count("in/bad.jpg: is not a picture of a known format; moved to 'out/failed/bad-2.jpg'\n"), 1) << Log();
    EXPECT_TRUE(std::filesystem::is_empty(In("")));
    EXPECT_TRUE(Portraits().empty());
}

TEST_F(Watch, WhatIsNotYetAPhotographIsLeftAlone) {
    Start();
    for (const char* name : {".a.png", "b.png.part", "c.tmp", "notes.txt"})
        work_.Put(std::string("in/") + name, Photo());
    std::filesystem::create_directory(In("folder.png"));
    PutPhoto("last.png");
    EXPECT_TRUE(Appears(Out("last.png"))) << Log();
    Pause(2500); // as long as a failure takes to be moved
    EXPECT_EQ(Portraits(), Names{"last.png"});
    EXPECT_FALSE(Exists(Failed("")));
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(Log(), "orvane: watching 'in'\n");
}

TEST_F(Watch, AFileThatGrowsSlowlyIsTakenWhenItIsWhole) {
    Start();
    const std::string photo = Photo();
    {
        std::ofstream held(In("held.png"), std::ios::binary);
        held << photo.substr(0, 200) << std::flush;
        // Another one, whose writer opens it anew for each piece.
        for (std::size_t at = 0; at < photo.size(); at += photo.size() / 4) {
            std::ofstream(In("pieces.png"), std::ios::binary | std::ios::app) << photo.substr(at, photo.size() / 4);
            Pause(700);
        }
        held << photo.substr(200);
    }
    EXPECT_TRUE(Appears(Out("held.png"))) << Log();
    EXPECT_TRUE(Appears(Out("pieces.png"))) << Log();
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(work_.Get("out/held.png"), work_.Get("out/pieces.png"));
    EXPECT_FALSE(Exists(Failed("")));
}

TEST_F(Watch, AReplacedPhotographIsDoneAgain) {
    Start();
    PutPhoto("a.png");
    EXPECT_TRUE(Appears(Out("a.png"))) << Log();
    const std::string before = work_.Get("out/a.png");
    work_.Put("new", Encoded(".png", PhotoWithSquare(240, 200, 100, 90)));
    std::filesystem::rename(work_ / "new", In("a.png"));
    EXPECT_TRUE(Comes([&] { return work_.Get("out/a.png") != before; })) << Log();
    EXPECT_EQ(Stop(), 0);
    EXPECT_FALSE(Exists(Failed("")));
}

TEST_F(Watch, ASecondWatchGoesOnWhereTheFirstEnded) {
    PutPhoto("a.png", 1);
    PutPhoto("b.png", 2);
    Start();
    EXPECT_TRUE(Comes([&] { return Portraits() == Names{"a.png", "b.png"}; })) << Log();
    EXPECT_EQ(Stop(), 0);
    const auto made = std::filesystem::last_write_time(Out("a.png"));
    std::filesystem::remove(work_ / "stdout");
    PutPhoto("b.png", 3);
    PutPhoto("c.png", 4);
    Start({"--json"});
    EXPECT_TRUE(Comes([&] { return ProcessResult::Lines(Told()).size() == 3; })) << Told();
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(std::filesystem::last_write_time(Out("a.png")), made);
    for (const std::string& line : ProcessResult::Lines(Told())) {
        EXPECT_EQ(line.find("\"kept\":true") != std::string::npos, line.find("in/a.png") != std::string::npos) << line;
    }
}

TEST_F(Watch, TwoPhotographsForOnePortraitAreOneTooMany) {
    Start();
    PutPhoto("a.png");
    EXPECT_TRUE(Appears(Out("a.png"))) << Log();
    work_.Put("in/a.bmp", Encoded(".bmp", PhotoWithSquare(240, 200, 100, 90)));
    EXPECT_TRUE(Appears(Failed("a.bmp"))) << Log();
    EXPECT_TRUE(Comes([&] { return Count("moved to") == 1; }));
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(work_.Get("out/failed/a.bmp.txt"), "the portrait 'out/a.png' is that of 'a.png'\n");
}

TEST_F(Watch, AFileOfSomebodyElseIsNotReplacedWithoutForce) {
    work_.Put("out/a.png", "of somebody else");
    Start();
    PutPhoto("a.png");
    EXPECT_TRUE(Appears(Failed("a.png.txt"))) << Log();
    EXPECT_TRUE(Appears(Failed("a.png")));
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(work_.Get("out/a.png"), "of somebody else");
    PutPhoto("a.png");
    Start({"--force"});
    EXPECT_TRUE(Comes([&] { return work_.Get("out/a.png") != "of somebody else"; })) << Log();
    EXPECT_EQ(Stop(), 0);
}

TEST_F(Watch, TwoMachinesShareAFolder) {
    for (int i = 0; i < 8; ++i) PutPhoto(std::to_string(i) + ".png", i);
    Start({"--shard", "1/2", "--report", "report.csv"});
    EXPECT_TRUE(Comes([&] { return !Portraits().empty(); })) << Log();
    Pause(300);
    EXPECT_EQ(Stop(), 0);
    const std::size_t first = Portraits().size();
    EXPECT_GT(first, 0U);
    EXPECT_LT(first, 8U);
    EXPECT_EQ(ProcessResult::Lines(work_.Get("report.csv")).size(), first + 1);
    Start({"--shard", "2/2"});
    EXPECT_TRUE(Comes([&] { return Portraits().size() == 8; })) << Log();
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(ProcessResult::Lines(Told()).size(), 8U) << Told();
}

TEST_F(Watch, WhatCannotBeWatchedIsRefused) {
    work_.Put("file", "x");
    std::filesystem::create_directories(Failed(""));
    const struct {
        Arguments arguments;
        const char* error;
    } cases[] = {
        {{"none", "-o", "out"}, "'watch' wants an existing folder, and 'none' is none"},
        {{"in", "-o", "none"}, "'watch' wants an existing folder for -o, and 'none' is none"},
        {{"in", "-o", "file"}, "'watch' wants an existing folder for -o, and 'file' is none"},
        {{"in", "-o", "./in/"}, "the portraits can't lie in the folder that is watched; give another one for -o"},
        {{"out/failed", "-o", "out"}, "the folder 'out/failed' takes the photographs that fail and can't be watched"},
        {{"in", "out", "-o", "out"}, "'watch' wants one folder"},
        {{"-o", "out"}, "'watch' wants one folder"},
        {{"in"}, "'watch' wants -o and a folder"},
        {{"in", "-o", "out", "--output-name", "{number}.png"},
         "--output-name: photographs that arrive have no {number}"},
        {{"in", "-o", "out", "--steps", "out"}, "'watch' knows no option '--steps'"},
        {{"in", "-o", "out", "--report", "file.csv"}, "the report 'file.csv' exists already; --force replaces it"},
    };
    work_.Put("file.csv", "x");
    for (const auto& [given, error] : cases) {
        Arguments arguments{"watch"};
        arguments.insert(arguments.end(), given.begin(), given.end());
        const ProcessResult result = RunProcess(File(), arguments, work_.Path());
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.err, std::string("orvane: ") + error + "\n");
    }
    Start();
    const ProcessResult second = RunProcess(File(), {"watch", "in", "-o", "out"}, work_.Path());
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_EQ(second.err, "orvane: the journal 'out/.orvane-journal' is in use by another run\n");
    EXPECT_EQ(Stop(), 0);
    std::filesystem::remove(home_ / "Orvane.dat");
    const ProcessResult blind = RunProcess(File(), {"watch", "in", "-o", "out"}, work_.Path());
    EXPECT_EQ(blind.exitCode, 1);
    EXPECT_EQ(blind.err, "orvane: the classifier Orvane.dat beside the program is missing or unusable\n");
}

TEST_F(Watch, PortraitsNeverLieAmongThePhotographs) {
    std::filesystem::create_directory_symlink("../in", Out("sub"));
    Start({"--output-name", "sub/{stem}-portrait.png"});
    PutPhoto("a.png");
    EXPECT_TRUE(Appears(Failed("a.png"))) << Log();
    EXPECT_EQ(Stop(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(In("")));
}

} // namespace
} // namespace orvane::tools
