// A process that ends while the operator's window is open ends soon, and with the code that the host gave it.
#include "tests/support/environment_value.h"
#include "tests/support/temp_root.h"
#include "tests/window/sessions/cameras.h"
#include "tests/window/sessions/window_host.h"

#include <chrono>
#include <cstdlib>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

constexpr int kCode = 7;

/// Each test's statement runs in a process of its own.
class ProcessEnd : TempRoot, public ::testing::Test {
protected:
    ProcessEnd() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    ~ProcessEnd() override { EXPECT_LT(std::chrono::steady_clock::now() - begin_, 60s); }

    /// Ends the process from a handler of the host's, which the window's loop serves.
    static void EndInside(Hand& hand) {
        hand.OnWindowsThread([] { std::exit(kCode); });
    }
    static void Picture(const std::function<void(Hand&)>& end) {
        WindowHost host;
        const HostBlock photo(PictureOf(ScenePicture::face));
        host.Detect(photo, end);
    }
    static void Live(const std::function<void(Hand&)>& end) {
        const Cameras cameras;
        WindowHost host;
        host.DetectLive(cameras.IndexOf(Camera::portrait), [&](Hand& hand) {
            std::this_thread::sleep_for(1s); // frames come, and the face is looked for
            end(hand);
        });
    }

private:
    // Inside its loop the toolkit holds much that it can't give back.
    const EnvironmentValue leaks_{"ASAN_OPTIONS", "detect_leaks=0"};
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

TEST_F(ProcessEnd, InsideTheLoopOfAWindowKeepsTheHostsCode) {
    EXPECT_EXIT(Picture(EndInside), ::testing::ExitedWithCode(kCode), "");
}

TEST_F(ProcessEnd, InsideTheLoopOfALiveSessionKeepsTheHostsCode) {
    EXPECT_EXIT(Live(EndInside), ::testing::ExitedWithCode(kCode), "");
}

#ifdef _WIN32 // on Linux the toolkit asks that the thread of the windows ends the process
TEST_F(ProcessEnd, OnAnotherThreadWhileAWindowIsOpenKeepsTheHostsCode) {
    EXPECT_EXIT(Picture([](Hand&) { std::exit(kCode); }), ::testing::ExitedWithCode(kCode), "");
}

TEST_F(ProcessEnd, OnAnotherThreadDuringALiveSessionKeepsTheHostsCode) {
    EXPECT_EXIT(Live([](Hand&) { std::exit(kCode); }), ::testing::ExitedWithCode(kCode), "");
}
#endif

} // namespace
} // namespace orvane::test
