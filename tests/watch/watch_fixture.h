// The built program watching a folder of the test's own, and what comes of it.
#pragma once

#include "tests/tools/placed_tool.h"

#include <chrono>
#include <csignal>
#include <dirent.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <thread>

namespace orvane::tools {

class WatchFixture : public testing::Test, protected PlacedTool {
protected:
    using Arguments = std::vector<std::string>;
    using Names = std::vector<std::string>;

    WatchFixture() : PlacedTool(ORVANE_TOOL), work_(Work()), home_(Home()) {
        std::filesystem::create_directory(In(""));
        std::filesystem::create_directory(Out(""));
    }
    ~WatchFixture() override {
        if (watch_ > 0) ::kill(watch_, SIGKILL);
        if (watch_ > 0) ::waitpid(watch_, nullptr, 0);
    }

    std::string In(const std::string& name) const { return work_ / ("in/" + name); }
    std::string Out(const std::string& name) const { return work_ / ("out/" + name); }
    std::string Failed(const std::string& name) const { return Out("failed/" + name); }

    static std::string Photo(int grey = 200) {
        Picture picture = PhotoWithSquare(200, 160, 40, 50);
        SetPixel(picture, 0, 0, {grey, grey, grey}); // so that each may be another photograph
        return Encoded(".png", picture);
    }
    void PutPhoto(const std::string& name, int grey = 200) const { work_.Put("in/" + name, Photo(grey)); }

    /// Starts the watch and waits until it has begun.
    void Start(const Arguments& more = {}, const std::function<void()>& inChild = nullptr) {
        Arguments arguments{"orvane", "watch", "in", "-o", "out", "--size", "76x100"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        std::vector<char*> pointers;
        for (std::string& argument : arguments) pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        const std::string program = File();
        const std::string log = work_ / "log";
        const std::string out = work_ / "stdout";
        watch_ = ::fork();
        if (watch_ == 0) {
            const int outFile = ::open(out.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
            const int errFile = ::open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            if (inChild) inChild();
            if (::chdir(work_.Path().c_str()) == 0 && ::dup2(outFile, 1) == 1 && ::dup2(errFile, 2) == 2) {
                ::execv(program.c_str(), pointers.data());
            }
            ::_exit(127);
        }
        ASSERT_TRUE(Comes([&] { return Log().find("watching") != std::string::npos; })) << Log();
    }

    /// Asks it to end, and gives its exit code; -1 when a signal ended it.
    int Stop(int signal = SIGTERM) {
        ::kill(watch_, signal);
        int status = 0;
        ::waitpid(watch_, &status, 0);
        watch_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string Log() const { return work_.Get("log"); }
    std::string Told() const { return work_.Get("stdout"); }
    int Count(const std::string& text) const {
        int count = 0;
        const std::string log = Log();
        for (std::size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1)) ++count;
        return count;
    }

    static bool Exists(const std::string& path) {
        std::error_code ignored;
        return std::filesystem::exists(path, ignored);
    }

    /// Whether `condition` comes true in the seconds that a busy machine may need.
    static bool Comes(const std::function<bool()>& condition, int seconds = 20) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end) return false;
            Pause(10);
        }
        return true;
    }
    static bool Appears(const std::string& path) {
        return Comes([&] { return Exists(path); });
    }
    static void Pause(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

    /// Workers of the watch.
    std::vector<pid_t> Workers() const {
        std::vector<pid_t> workers;
        for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
            const pid_t process = std::atoi(entry.path().filename().c_str());
            std::ifstream file(entry.path() / "stat");
            std::string line;
            if (process <= 0 || !std::getline(file, line) || line.find(')') == std::string::npos) continue;
            int parent = 0;
            char state = 0;
            std::istringstream(line.substr(line.rfind(')') + 1)) >> state >> parent;
            if (parent == watch_ && state != 'Z') workers.push_back(process);
        }
        return workers;
    }

    /// Names in the folder of outputs, without those of the program's own.
    Names Portraits() const {
        Names names;
        for (const auto& entry : std::filesystem::directory_iterator(Out(""))) {
            const std::string name = entry.path().filename().string();
            if (name[0] != '.' && name != "failed") names.push_back(name);
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    const TempFolder& work_;
    const TempFolder& home_;
    pid_t watch_ = 0;
};

} // namespace orvane::tools
