// Owners that a host may name: of another process, disabled, without a place on the screen, gone or none.
#include "tests/window/sessions/window_host.h"

#include <windows.h>

namespace orvane::test {
namespace {

/// A program with a window, ended with the object.
class OtherProgram {
public:
    OtherProgram() {
        wchar_t command[] = L"notepad.exe";
        STARTUPINFOW start{};
        start.cb = sizeof start;
        if (!CreateProcessW(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process_)) return;
        for (int waited = 0; waited < 30'000 && window_ == nullptr; waited += 20) {
            Sleep(20);
            EnumWindows(&OtherProgram::Look, reinterpret_cast<LPARAM>(this));
        }
    }
    ~OtherProgram() {
        End();
        CloseHandle(process_.hThread);
        CloseHandle(process_.hProcess);
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    HWND Window() const { return window_; }
    void End() {
        TerminateProcess(process_.hProcess, 0);
        WaitForSingleObject(process_.hProcess, INFINITE);
    }

private:
    static BOOL CALLBACK Look(HWND window, LPARAM parameter) {
        auto& program = *reinterpret_cast<OtherProgram*>(parameter);
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        const bool own = process == program.process_.dwProcessId && IsWindowVisible(window) &&
                         GetWindow(window, GW_OWNER) == nullptr;
        if (own) program.window_ = window;
        return !own;
    }

    PROCESS_INFORMATION process_{};
    HWND window_ = nullptr;
};

HWND MakeWindow(HWND parent = nullptr) {
    return CreateWindowExW(0, L"Static", L"host", parent == nullptr ? WS_OVERLAPPEDWINDOW | WS_VISIBLE : 0, 50, 50, 300,
                           200, parent, nullptr, nullptr, nullptr);
}

class OwnerWindow : public ::testing::Test {
protected:
    /// A detection with the owner that was named; `look` sees it with the window open.
    void ExpectSession(const std::function<void()>& look = [] {}) {
        EXPECT_EQ(host.Detect(photo,
                              [&](Hand& hand) {
                                  look();
                                  hand.Click(kCancelButton);
                              }),
                  ORV_CANCELLED);
    }

    WindowHost host;
    const HostBlock photo{PictureOf(ScenePicture::face)};
};

TEST_F(OwnerWindow, ThatIsNoneIsRefused) {
    HWND gone = MakeWindow();
    DestroyWindow(gone);
    int nothing = 0;
    for (orv_Window owner : {orv_Window{nullptr}, orv_Window{gone}, orv_Window{&nothing},
                             reinterpret_cast<orv_Window>(INVALID_HANDLE_VALUE), orv_Window{GetModuleHandleW(nullptr)},
                             orv_Window{GetCurrentProcess()}}) {
        EXPECT_EQ(host.lib.orv_SetOwnerWindow(owner), ORV_NO_SESSION) << owner;
    }
    ExpectSession();
}

TEST_F(OwnerWindow, ThatGoesBeforeTheWindowOpensCountsAsNone) {
    HWND owner = MakeWindow();
    EXPECT_EQ(host.lib.orv_SetOwnerWindow(owner), ORV_OK);
    DestroyWindow(owner);
    ExpectSession();
}

TEST_F(OwnerWindow, ThatWasDisabledStaysDisabled) {
    HWND owner = MakeWindow();
    EnableWindow(owner, FALSE);
    EXPECT_EQ(host.lib.orv_SetOwnerWindow(owner), ORV_OK);
    ExpectSession([&] { EXPECT_FALSE(IsWindowEnabled(owner)); });
    EXPECT_FALSE(IsWindowEnabled(owner));
    DestroyWindow(owner);
}

TEST_F(OwnerWindow, ForMessagesAloneIsTakenAndTheWindowIsSeen) {
    HWND owner = MakeWindow(HWND_MESSAGE);
    ASSERT_NE(owner, nullptr);
    EXPECT_EQ(host.lib.orv_SetOwnerWindow(owner), ORV_OK);
    ExpectSession();
    EXPECT_TRUE(IsWindow(owner));
    EXPECT_TRUE(IsWindowEnabled(owner));
    DestroyWindow(owner);
}

TEST_F(OwnerWindow, OfAnotherProcessIsDisabledAndEnabledAgain) {
    const OtherProgram other;
    ASSERT_NE(other.Window(), nullptr);
    EXPECT_EQ(host.lib.orv_SetOwnerWindow(other.Window()), ORV_OK);
    ExpectSession([&] { EXPECT_FALSE(IsWindowEnabled(other.Window())); });
    EXPECT_TRUE(IsWindowEnabled(other.Window()));
}

TEST_F(OwnerWindow, OfAnotherProcessThatEndsCancelsTheSession) {
    OtherProgram other;
    ASSERT_NE(other.Window(), nullptr);
    EXPECT_EQ(host.lib.orv_SetOwnerWindow(other.Window()), ORV_OK);
    EXPECT_EQ(host.Detect(photo, [&](Hand&) { other.End(); }), ORV_CANCELLED);
    ExpectSession();
}

} // namespace
} // namespace orvane::test
