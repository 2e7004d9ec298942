// What is left once a camera is closed: nothing. And nothing of it shows while it is open.
#include "tests/capture/directshow/capture_fixture.h"
#include "tests/window/win32/handle_count.h"

#include <tlhelp32.h>

#include <atomic>
#include <thread>

namespace orvane::test {
namespace {

using DirectShowLifetime = DirectShow;

int ThreadCount() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
    }
    CloseHandle(snapshot);
    return count;
}

int HandleCount() {
    DWORD count = 0;
    return GetProcessHandleCount(GetCurrentProcess(), &count) ? static_cast<int>(count) : -1;
}

BOOL CALLBACK CountVisible(HWND window, LPARAM counter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window)) ++*reinterpret_cast<int*>(counter);
    return TRUE;
}

/// Windows of this process that can be seen, those within others included.
int VisibleWindows() {
    int count = 0;
    EnumWindows(CountVisible, reinterpret_cast<LPARAM>(&count));
    EnumChildWindows(GetDesktopWindow(), CountVisible, reinterpret_cast<LPARAM>(&count));
    return count;
}

TEST_F(DirectShowLifetime, NoWindowShows) {
    ASSERT_TRUE(Open(TestCamera::previewAndCapture));
    EXPECT_EQ(VisibleWindows(), 0);
    ASSERT_TRUE(source_.ConfigureWindow(1, sink_));
    EXPECT_EQ(VisibleWindows(), 0);
    ASSERT_TRUE(source_.Run());
    ASSERT_TRUE(sink_.Wait(5));
    EXPECT_EQ(VisibleWindows(), 0);
    ASSERT_TRUE(source_.Pause());
    EXPECT_EQ(VisibleWindows(), 0);
    source_.Close();
    EXPECT_EQ(VisibleWindows(), 0);
}

TEST_F(DirectShowLifetime, CloseEndsTheFramesAndTheDevice) {
    ASSERT_TRUE(OpenAndRun(TestCamera::previewAndCapture));
    ASSERT_TRUE(sink_.Wait(3));
    source_.Close();
    const int count = sink_.Count();
    const LONG delivered = TestCameras::Counters().delivered;
    Sleep(200);
    EXPECT_EQ(sink_.Count(), count);
    EXPECT_EQ(TestCameras::Counters().delivered, delivered);
    ExpectNothingLeft();
}

/// Takes its time over each frame.
class SlowSink final : public FrameSink {
public:
    int32 BufferCB(double, const uint8*, int32) override {
        busy = true;
        Sleep(300);
        busy = false;
        return 0;
    }
    std::atomic<bool> busy{false};
};

TEST_F(DirectShowLifetime, CloseWaitsForAFrameOnItsWay) {
    SlowSink slow;
    ASSERT_TRUE(Open(TestCamera::previewAndCapture));
    ASSERT_TRUE(source_.ConfigureWindow(1, slow));
    ASSERT_TRUE(source_.Run());
    for (int i = 0; i < 500 && !slow.busy; ++i) Sleep(10);
    ASSERT_TRUE(slow.busy);
    source_.Close();
    EXPECT_FALSE(slow.busy);
    Sleep(400);
    EXPECT_FALSE(slow.busy);
    ExpectNothingLeft();
}

TEST_F(DirectShowLifetime, ASourceThatGoesClosesItsDevice) {
    Plug({TestCamera::previewAndCapture});
    {
        DirectShowSource source;
        source.EnumerateDevices();
        ASSERT_TRUE(source.Open(first_, &size_));
        ASSERT_TRUE(source.ConfigureWindow(1, sink_));
        ASSERT_TRUE(source.Run());
        ASSERT_TRUE(sink_.Wait(1));
    }
    ExpectNothingLeft();
}

TEST_F(DirectShowLifetime, FiftyTurnsLeaveNothingBehind) {
    Plug({TestCamera::previewAndCapture, TestCamera::noConnection});
    const auto turn = [&](int number) {
        ASSERT_TRUE(source_.Open(first_, &size_));
        ASSERT_TRUE(source_.ConfigureWindow(1, sink_));
        ASSERT_TRUE(source_.Run());
        EXPECT_TRUE(number % 3 == 2 || sink_.Wait(1)); // some end before the first frame
        EXPECT_TRUE(number % 2 == 1 || source_.Pause());
        source_.Close();
    };
    // The first ones load what the system keeps for good.
    for (int i = 0; i < 5; ++i) turn(i);
    ExpectNothingLeft();
    const int handles = HandleCount(), threads = ThreadCount();
    const int windows = UserHandles(), drawings = GdiHandles();
    for (int i = 0; i < 50; ++i) turn(i);
    ExpectNothingLeft();
    EXPECT_LE(HandleCount(), handles + 5);
    EXPECT_LE(ThreadCount(), threads + 2); // one of the system's own pool may come
    EXPECT_LE(UserHandles(), windows + 2);
    EXPECT_LE(GdiHandles(), drawings + 2);
}

TEST_F(DirectShowLifetime, FailuresLeaveNothingBehind) {
    Plug({TestCamera::topDown, TestCamera::noFilter, TestCamera::noSize});
    const auto turn = [&] {
        for (int32 i = 0; i < 3; ++i) EXPECT_FALSE(source_.Open(first_ + i, &size_));
    };
    for (int i = 0; i < 2; ++i) turn();
    const int handles = HandleCount(), threads = ThreadCount();
    for (int i = 0; i < 10; ++i) turn();
    ExpectNothingLeft();
    EXPECT_LE(HandleCount(), handles + 5);
    EXPECT_LE(ThreadCount(), threads + 2);
}

} // namespace
} // namespace orvane::test
