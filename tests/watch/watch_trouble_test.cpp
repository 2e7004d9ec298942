// A watched folder when something goes wrong around it: folders that go away, full disks, workers that end, too much at
// once, and a sudden end.
#include "tests/watch/watch_fixture.h"

namespace orvane::tools {
namespace {

using Watch = WatchFixture;

TEST_F(Watch, AFolderThatGoesAwayIsTakenUpAgain) {
    Start();
    std::filesystem::rename(work_ / "in", work_ / "away");
    EXPECT_TRUE(Comes([&] { return Count("has gone") == 1; })) << Log();
    work_.Put("away/meanwhile.png", Photo(1));
    Pause(2500); // several tries
    std::filesystem::rename(work_ / "away", work_ / "in");
    // Not only when the whole folder is looked at anyway, ten seconds after the start.
    EXPECT_TRUE(Comes([&] { return Exists(Out("meanwhile.png")); }, 6)) << Log();
    PutPhoto("later.png", 2);
    EXPECT_TRUE(Appears(Out("later.png"))) << Log();
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(Log(), "orvane: watching 'in'\n"
                     "orvane: the folder 'in' has gone; waiting for it\n"
                     "orvane: the folder 'in' is back\n");
}

TEST_F(Watch, ThePortraitsFolderMayGoAwayToo) {
    Start();
    PutPhoto("a.png", 1);
    EXPECT_TRUE(Appears(Out("a.png"))) << Log();
    std::filesystem::rename(work_ / "out", work_ / "away");
    PutPhoto("b.png", 2);
    work_.Put("in/bad.jpg", "no picture");
    Pause(3500);
    EXPECT_FALSE(Exists(work_ / "out"));
    std::filesystem::rename(work_ / "away", work_ / "out");
    EXPECT_TRUE(Appears(Out("b.png"))) << Log();
    EXPECT_TRUE(Appears(Failed("bad.jpg"))) << Log();
    EXPECT_TRUE(Comes([&] { return Count("moved to") == 1; }));
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(Count("\n"), 4) << Log(); // begun, gone, back, moved
    // Another folder in its place has its own journal, and none of the portraits.
    std::filesystem::remove(work_ / "stdout");
    Start();
    std::filesystem::rename(work_ / "out", work_ / "old");
    std::filesystem::create_directory(work_ / "out");
    EXPECT_TRUE(Comes([&] { return Portraits() == Names{"a.png", "b.png"}; })) << Log();
    EXPECT_EQ(Stop(), 0);
}

/// Sets how large files of the watch and its workers may grow, as a full disk would.
void LimitFiles(pid_t process, rlim_t bytes) {
    rlimit limit{};
    ASSERT_EQ(::prlimit(process, RLIMIT_FSIZE, nullptr, &limit), 0);
    limit.rlim_cur = bytes;
    ASSERT_EQ(::prlimit(process, RLIMIT_FSIZE, &limit, nullptr), 0);
}

TEST_F(Watch, AFullDiskIsToldOnceAndPortraitsComeWhenThereIsRoom) {
    Start({"--jobs", "2", "--size", "300x400"}, [] {
        std::signal(SIGXFSZ, SIG_IGN); // writes fail then, and no more
        const rlimit limit{1000, RLIM_INFINITY};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    });
    PutPhoto("a.png", 1);
    PutPhoto("b.png", 2);
    EXPECT_TRUE(Comes([&] { return Count("trying again") == 1; })) << Log();
    Pause(3500); // several tries
    EXPECT_EQ(Portraits(), Names());
    EXPECT_TRUE(Exists(In("a.png"))); // it is no failure of the photographs
    const std::string journal = work_.Get("out/.orvane-journal");
    EXPECT_LE(ProcessResult::Lines(journal).size(), 2U) << journal;
    LimitFiles(watch_, RLIM_INFINITY);
    for (const pid_t worker : Workers()) LimitFiles(worker, RLIM_INFINITY);
    EXPECT_TRUE(Comes([&] { return Portraits() == Names{"a.png", "b.png"}; })) << Log();
    EXPECT_EQ(Stop(), 0);
    const Names lines = ProcessResult::Lines(Log());
    ASSERT_EQ(lines.size(), 3U) << Log();
    EXPECT_NE(lines[1].find(": File too large; trying again"), std::string::npos) << Log();
    EXPECT_EQ(lines[2], "orvane: the folder 'out' takes portraits again");
    EXPECT_FALSE(Exists(Failed("")));
}

TEST_F(Watch, APhotographWhoseWorkerHangsOrCrashesCostsItselfAlone) {
    Start({"--jobs", "1", "--timeout", "2"});
    PutPhoto("first.png", 1);
    EXPECT_TRUE(Appears(Out("first.png"))) << Log();
    ASSERT_EQ(Workers().size(), 1U);
    ::kill(Workers()[0], SIGSTOP);
    PutPhoto("hangs.png", 2);
    EXPECT_TRUE(Appears(Failed("hangs.png"))) << Log();
    PutPhoto("second.png", 3);
    EXPECT_TRUE(Appears(Out("second.png"))) << Log();
    ASSERT_EQ(Workers().size(), 1U);
    const pid_t worker = Workers()[0];
    ::kill(worker, SIGSTOP);
    PutPhoto("crashes.png", 4);
    Pause(1000); // it is given out by then
    ::kill(worker, SIGKILL);
    PutPhoto("third.png", 5);
    EXPECT_TRUE(Appears(Failed("crashes.png"))) << Log();
    EXPECT_TRUE(Appears(Out("third.png"))) << Log();
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(work_.Get("out/failed/hangs.png.txt"), "took longer than --timeout 2\n");
    EXPECT_EQ(work_.Get("out/failed/crashes.png.txt"), "its worker crashed (signal 9, Killed)\n");
    EXPECT_EQ(Portraits(), (Names{"first.png", "second.png", "third.png"}));
}

TEST_F(Watch, NothingIsLostAmongMoreEventsThanTheSystemKeeps) {
    int most = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
    if (most <= 0 || most > 100000) GTEST_SKIP() << "the system keeps " << most << " events";
    Start();
    ::kill(watch_, SIGSTOP);
    for (int i = 0; i <= most; ++i) std::ofstream(In(".noise" + std::to_string(i % 2)), std::ios::app);
    Names all;
    for (int i = 100; i < 200; ++i) {
        PutPhoto(std::to_string(i) + ".png", i);
        all.push_back(std::to_string(i) + ".png");
    }
    ::kill(watch_, SIGCONT);
    EXPECT_TRUE(Comes([&] { return Exists(Out("100.png")); }, 6)) << Log(); // sooner than every ten seconds
    EXPECT_TRUE(Comes([&] { return Portraits() == all; }, 60)) << Portraits().size() << "\n" << Log();
    EXPECT_EQ(Stop(), 0);
    EXPECT_EQ(ProcessResult::Lines(Told()).size(), all.size()); // each once
}

TEST_F(Watch, AnEndInTheMiddleLeavesWholePortraitsOnly) {
    constexpr int kPhotos = 60;
    for (int i = 0; i < kPhotos; ++i) PutPhoto("p" + std::to_string(i) + ".png", i);
    for (const int signal : {SIGTERM, SIGKILL}) {
        std::filesystem::remove_all(Out(""));
        std::filesystem::create_directory(Out(""));
        Start();
        EXPECT_TRUE(Comes([&] { return Portraits().size() > 5; })) << Log();
        const std::vector<pid_t> workers = Workers();
        EXPECT_EQ(Stop(signal), signal == SIGTERM ? 0 : -1);
        const std::size_t before = Portraits().size();
        EXPECT_LT(before, std::size_t{kPhotos});
        // Workers end after it.
        EXPECT_TRUE(Comes([&] {
            return std::all_of(workers.begin(), workers.end(), [](pid_t worker) { return ::kill(worker, 0) != 0; });
        }));
        for (const std::string& name : Portraits()) {
            Picture portrait;
            std::string error;
            EXPECT_TRUE(ReadPicture(Out(name), &portrait, &error)) << name << " " << error;
        }
        if (signal == SIGTERM) {
            for (const auto& entry : std::filesystem::directory_iterator(Out(""))) {
                EXPECT_NE(entry.path().extension(), ".tmp") << entry.path();
            }
        }
        Start();
        EXPECT_TRUE(Comes([&] { return Portraits().size() == kPhotos; }, 60)) << Log();
        EXPECT_EQ(Stop(), 0);
        EXPECT_FALSE(Exists(Failed("")));
    }
}

} // namespace
} // namespace orvane::tools
