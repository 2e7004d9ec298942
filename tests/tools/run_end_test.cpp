// Runs that end before their time, and what they leave: killed, interrupted, without room, without rights.
#include "tests/tools/placed_tool.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <pty.h>
#include <sys/resource.h>
#include <thread>

namespace orvane::tools {
namespace {

using Arguments = std::vector<std::string>;
using Lines = std::vector<std::string>;

/// The program, started and not waited for. It tells each photo in a pipe of few lines, so that it gets no further
/// than they are read, however slow its test is.
class StartedTool {
public:
    StartedTool(const PlacedTool& tool, const Arguments& arguments) {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        EXPECT_LE(::fcntl(ends[1], F_SETPIPE_SZ, 4096), 4096);
        lines_ = ends[0];
        std::vector<std::string> words{tool.File()};
        words.insert(words.end(), arguments.begin(), arguments.end());
        words.emplace_back("--json");
        std::vector<char*> pointers;
        for (std::string& word : words) pointers.push_back(word.data());
        pointers.push_back(nullptr);
        id_ = ::fork();
        if (id_ != 0) {
            ::close(ends[1]);
            return;
        }
        const int nowhere = ::open("/dev/null", O_RDWR);
        for (const int stream : {0, 2}) ::dup2(nowhere, stream);
        ::dup2(ends[1], 1);
        if (::chdir(tool.Work().Path().c_str()) == 0) ::execv(pointers[0], pointers.data());
        ::_exit(127);
    }
    ~StartedTool() {
        ::kill(id_, SIGKILL);
        Wait();
        ::close(lines_);
    }
    StartedTool(const StartedTool&) = delete;
    StartedTool& operator=(const StartedTool&) = delete;

    void Kill(int signal) const { ::kill(id_, signal); }

    /// Waits until `count` more photos are told. False where the program ended before.
    bool Await(int count) const {
        for (char c = 0; count > 0; count -= c == '\n' ? 1 : 0) {
            if (::read(lines_, &c, 1) != 1) return false;
        }
        return true;
    }

    /// Exit code, after all that it told; 128 and the signal's number where one ended it.
    int Wait() {
        char rest[4096];
        while (::read(lines_, rest, sizeof(rest)) > 0) {
        }
        int status = 0;
        if (waited_ || ::waitpid(id_, &status, 0) != id_) return code_;
        waited_ = true;
        return code_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    std::vector<pid_t> Workers() const {
        std::vector<pid_t> workers;
        const std::string tasks = "/proc/" + std::to_string(id_) + "/task";
        std::error_code gone;
        for (const auto& task : std::filesystem::directory_iterator(tasks, gone)) {
            std::ifstream children(task.path() / "children");
            for (pid_t child = 0; children >> child;) workers.push_back(child);
        }
        return workers;
    }

private:
    int lines_ = -1;
    pid_t id_ = 0;
    bool waited_ = false;
    int code_ = -1;
};

/// Workers see that their run has gone and end by themselves.
void ExpectEndOf(const std::vector<pid_t>& workers) {
    for (const pid_t worker : workers) {
        const std::filesystem::path memory = "/proc/" + std::to_string(worker) + "/exe"; // ended ones have none
        std::error_code gone;
        for (int i = 0; i < 2000 && !std::filesystem::read_symlink(memory, gone).empty(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        EXPECT_TRUE(gone) << "worker " << worker << " goes on";
    }
}

class RunEnd : public testing::Test, protected PlacedTool {
protected:
    RunEnd() : PlacedTool(ORVANE_TOOL) {
        Make("in");
        Make("out");
        const std::string bytes[] = {PhotoBytes(0), PhotoBytes(4), PhotoBytes(8)};
        for (int i = 0; i < kPhotos; ++i) Work().Put("in/p" + std::to_string(100 + i) + ".png", bytes[i % 3]);
    }

    static constexpr int kPhotos = 120;

    static Arguments Portraits(const Arguments& more) {
        Arguments arguments{"portrait", "--size", "160x200", "in", "-o", "out", "--resume", "--quiet"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    Lines Finished() const {
        Lines names;
        for (const std::string& name : Names("out")) {
            if (name[0] != '.') names.push_back(name);
        }
        return names;
    }
    bool HasTemporaries() const {
        const Lines names = Names("out");
        return std::any_of(names.begin(), names.end(), [](const std::string& name) { return name.ends_with(".tmp"); });
    }
    std::map<std::string, int> Counts(const std::string& report) const {
        std::map<std::string, int> counts;
        for (const JsonValue& row : Objects(Work().Get(report))) ++counts[row["status"].text];
        return counts;
    }
    std::map<std::string, std::filesystem::file_time_type> Times() const {
        std::map<std::string, std::filesystem::file_time_type> times;
        for (const std::string& name : Finished())
            times[name] = std::filesystem::last_write_time(Work() / ("out/" + name));
        return times;
    }
    void ExpectWhole() const {
        for (const std::string& name : Finished()) {
            Picture picture;
            std::string error;
            EXPECT_TRUE(ReadPicture(Work() / ("out/" + name), &picture, &error)) << name << ": " << error;
        }
    }
};

TEST_F(RunEnd, AKilledRunGoesOnWithNothingLostAndNothingDoneTwice) {
    int before = 0;
    for (int round = 0; round < 3; ++round) {
        StartedTool run(*this, Portraits({"--jobs", "2"}));
        ASSERT_TRUE(run.Await(before + 6));
        const std::vector<pid_t> workers = run.Workers();
        run.Kill(SIGKILL);
        EXPECT_EQ(run.Wait(), 128 + SIGKILL);
        ExpectEndOf(workers);
        before = static_cast<int>(Finished().size());
        ASSERT_LT(before, kPhotos) << "killed too late to show anything";
        ExpectWhole();
    }
    const auto made = Times();
    const ProcessResult last = RunTool(Portraits({"--jobs", "2", "--report", "r.jsonl"}));
    EXPECT_EQ(last.exitCode, 0) << last.err;
    EXPECT_EQ(Finished().size(), static_cast<std::size_t>(kPhotos));
    const auto counts = Counts("r.jsonl");
    EXPECT_EQ(counts.at("kept"), static_cast<int>(made.size()));
    EXPECT_EQ(counts.at("kept") + counts.at("portrait"), kPhotos);
    const auto now = Times();
    for (const auto& [name, time] : made) EXPECT_EQ(now.at(name), time) << name << " was made again";
    ExpectWhole();
    EXPECT_FALSE(HasTemporaries());
}

TEST_F(RunEnd, AKilledWorkerCostsItsPhotoAlone) {
    StartedTool run(*this, Portraits({"--jobs", "2", "--report", "r.jsonl"}));
    int killed = 0;
    for (; killed < 3; ++killed) {
        ASSERT_TRUE(run.Await(4));
        const std::vector<pid_t> workers = run.Workers();
        ASSERT_FALSE(workers.empty());
        ::kill(workers[0], SIGKILL);
    }
    const int code = run.Wait();
    auto counts = Counts("r.jsonl");
    EXPECT_EQ(counts["portrait"] + counts["failed"], kPhotos);
    EXPECT_LE(counts["failed"], killed);
    EXPECT_EQ(code, counts["failed"] > 0 ? 1 : 0);
    for (const JsonValue& row : Objects(Work().Get("r.jsonl"))) {
        if (row["status"].text != "failed") continue;
        EXPECT_EQ(row["error"].text, "its worker crashed (signal 9, Killed)");
    }
    EXPECT_FALSE(HasTemporaries());
    EXPECT_EQ(RunTool(Portraits({"--report", "r.jsonl"})).exitCode, 0);
    counts = Counts("r.jsonl");
    EXPECT_EQ(counts["kept"] + counts["portrait"], kPhotos) << "what was lost is made now";
}

TEST_F(RunEnd, AnInterruptedRunEndsCleanly) {
    for (const int signal : {SIGINT, SIGTERM}) {
        const int before = static_cast<int>(Finished().size());
        StartedTool run(*this, Portraits({"--jobs", "2", "--report", "r.jsonl"}));
        ASSERT_TRUE(run.Await(before + 5));
        run.Kill(signal);
        std::this_thread::sleep_for(std::chrono::milliseconds(300)); // it looks ten times a second
        EXPECT_EQ(run.Wait(), 130);
        const Lines finished = Finished();
        ASSERT_LT(finished.size(), static_cast<std::size_t>(kPhotos)) << "interrupted too late to show anything";
        EXPECT_FALSE(HasTemporaries());
        ExpectWhole();
        auto counts = Counts("r.jsonl");
        EXPECT_EQ(static_cast<std::size_t>(counts["portrait"] + counts["kept"]), finished.size())
            << "what is done is told";
    }
}

TEST_F(RunEnd, ASecondRunOfTheSameFolderIsTurnedAway) {
    StartedTool run(*this, Portraits({"--jobs", "1"}));
    ASSERT_TRUE(run.Await(1));
    const ProcessResult second = RunTool(Portraits({"--jobs", "1"}));
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_EQ(second.err, "orvane: the journal 'out/.orvane-journal' is in use by another run\n");
}

TEST_F(RunEnd, AnOutputFolderThatVanishesFailsWhatIsLeft) {
    StartedTool run(*this, Portraits({"--jobs", "2", "--report", "r.jsonl"}));
    ASSERT_TRUE(run.Await(3));
    std::filesystem::rename(Work() / "out", Work() / "gone");
    EXPECT_EQ(run.Wait(), 1);
    auto counts = Counts("r.jsonl");
    EXPECT_EQ(counts["portrait"] + counts["failed"], kPhotos);
    EXPECT_GT(counts["failed"], 0);
    for (const JsonValue& row : Objects(Work().Get("r.jsonl"))) {
        if (row["status"].text != "failed") continue;
        EXPECT_NE(row["error"].text.find("No such file or directory"), std::string::npos) << row["error"].text;
    }
}

TEST_F(RunEnd, AFullDiskFailsWhatHasNoRoomWithALineEach) {
    // A disk of a few portraits, in a name space of its own.
    const std::string script = "mount -t tmpfs -o size=64k none out && '" + File() +
                               "' portrait --size 160x200 in -o out --resume --quiet --report r.jsonl --jobs 2; "
                               "code=$?; ls -A out > names; exit $code";
    const ProcessResult result = RunProcess("/usr/bin/unshare", {"-Urm", "sh", "-c", script}, Work().Path());
    if (result.err.find("unshare") != std::string::npos || result.err.find("mount:") != std::string::npos) {
        GTEST_SKIP() << "no name space for a disk of its own: " << result.err;
    }
    EXPECT_EQ(result.exitCode, 1);
    auto counts = Counts("r.jsonl");
    EXPECT_GT(counts["portrait"], 0);
    EXPECT_GT(counts["failed"], 0);
    EXPECT_EQ(counts["portrait"] + counts["failed"], kPhotos);
    EXPECT_NE(result.err.find("No space left on device"), std::string::npos);
    EXPECT_EQ(ProcessResult::Lines(result.err).size(), static_cast<std::size_t>(counts["failed"])) << "a line each";
    EXPECT_EQ(Work().Get("names").find(".tmp"), std::string::npos);
}

TEST_F(RunEnd, WhatMayNotBeReadIsToldAndTheOthersAreDone) {
    if (::geteuid() != 0) GTEST_SKIP() << "another user is needed";
    Make("in/locked");
    Work().Put("in/p101.png", PhotoBytes(0));
    std::filesystem::permissions(Work() / "in/locked", std::filesystem::perms::none);
    std::filesystem::permissions(Work() / "in/p101.png", std::filesystem::perms::none);
    for (const std::string& folder : {Work().Path(), Home().Path()}) {
        std::filesystem::permissions(folder, static_cast<std::filesystem::perms>(0755));
    }
    std::filesystem::permissions(Work() / "out", static_cast<std::filesystem::perms>(0777));
    const Arguments command{
        "--reuid=65534", "--clear-groups", File(),   "portrait", "--size", "80x100", "-r", "in", "-o",
        "out",           "--resume",       "--quiet"};
    const ProcessResult result = RunProcess("/usr/bin/setpriv", command, Work().Path());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(ProcessResult::Lines(result.err), (Lines{"orvane: in/locked: cannot open the folder: Permission denied",
                                                       "orvane: in/p101.png: cannot open: Permission denied"}));
    EXPECT_EQ(Finished().size(), static_cast<std::size_t>(kPhotos) - 1);
    std::filesystem::permissions(Work() / "in/p101.png", static_cast<std::filesystem::perms>(0644));
    const ProcessResult later = RunProcess("/usr/bin/setpriv", command, Work().Path());
    EXPECT_EQ(later.exitCode, 1) << "photos may be missing";
    EXPECT_EQ(later.err, "orvane: in/locked: cannot open the folder: Permission denied\n");
    EXPECT_EQ(Finished().size(), static_cast<std::size_t>(kPhotos));
}

TEST_F(RunEnd, NamesOfAnyBytesComeFromListsAndThroughStandardInput) {
    const std::string names[] = {"a\nb.png", "\xFF\xFE.png", "-r.png"};
    std::string list;
    for (const std::string& name : names) {
        PutPhoto(name);
        list += "./" + name + '\0';
    }
    Work().Put("list", list);
    const ProcessResult result = RunProcess(
        "/bin/sh", {"-c", "'" + File() + "' portrait --size 80x100 --files-from - -o out --report r.csv < list"},
        Work().Path());
    EXPECT_EQ(result.exitCode, 0) << result.err;
    for (const std::string& name : names) EXPECT_TRUE(Has("out/" + name));
    EXPECT_NE(Work().Get("r.csv").find("\r\n1,\"./a\nb.png\",\"out/a\nb.png\",portrait,"), std::string::npos);
}

#ifndef __SANITIZE_ADDRESS__
TEST_F(RunEnd, APhotoThatNeedsMoreMemoryThanAWorkerMayTakeFailsAlone) {
    Work().Put("in/p102.png", Encoded(".png", PhotoWithSquare(6000, 5000, 100, 100)));
    const ProcessResult result = RunTool(Portraits({"--memory", "64M", "--jobs", "2"}));
    EXPECT_EQ(result.exitCode, 1);
    ASSERT_EQ(ProcessResult::Lines(result.err).size(), 1U) << result.err;
    EXPECT_EQ(result.err.rfind("orvane: in/p102.png: ", 0), 0U) << result.err;
    EXPECT_EQ(Finished().size(), static_cast<std::size_t>(kPhotos) - 1);
}
#endif

/// What the program writes to a terminal of its own.
std::string OnTerminal(const PlacedTool& tool, const Arguments& arguments) {
    std::vector<std::string> words{tool.File()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    int terminal = -1;
    winsize size{24, 60, 0, 0};
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        ::setenv("TERM", "xterm", 1);
        if (::chdir(tool.Work().Path().c_str()) == 0) ::execv(pointers[0], pointers.data());
        ::_exit(127);
    }
    std::string text;
    char block[4096];
    for (ssize_t n = 0; (n = ::read(terminal, block, sizeof block)) > 0;)
        text.append(block, static_cast<std::size_t>(n));
    int status = 0;
    ::waitpid(child, &status, 0);
    ::close(terminal);
    return text;
}

TEST_F(RunEnd, ProgressIsOneLineOfATerminalThatGoesAway) {
    const std::string text =
        OnTerminal(*this, {"portrait", "--size", "80x100", "in", "-o", "out", "--json", "--jobs", "2"});
    EXPECT_NE(text.find(" of 120, "), std::string::npos) << text;
    EXPECT_NE(text.find(" a second, 0:00:"), std::string::npos) << text;
    // Every drawing ends in the first column, fills all but the last, and nothing of it stands in another line.
    std::size_t drawings = 0;
    for (std::size_t at = 0; (at = text.find(" of 120, ", at)) != std::string::npos; ++at) {
        const std::size_t start = text.rfind('\r', at);
        const std::size_t end = text.find('\r', at);
        ASSERT_NE(start, std::string::npos);
        ASSERT_NE(end, std::string::npos);
        EXPECT_EQ(end - start - 1, 59U);
        ++drawings;
    }
    EXPECT_GE(drawings, 2U);
    const std::string quiet = OnTerminal(*this, Portraits({}));
    EXPECT_EQ(quiet, "");
}

} // namespace
} // namespace orvane::tools
