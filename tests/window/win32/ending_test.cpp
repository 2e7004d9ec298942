// However a window ends and whatever is sent to it, it ends with a result, its owner is free again, and nothing
// of it stays behind.
#include "dialog/win32/face_confirm_win32.h"
#include "tests/window/win32/handle_count.h"
#include "tests/window/win32/open_window.h"
#include "tests/window/win32/screen_pixels.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::test {
namespace {

int Count(const std::vector<std::string>& events, const std::string& event) {
    return static_cast<int>(std::count(events.begin(), events.end(), event));
}

/// A window of the host.
class Owner {
public:
    explicit Owner(HWND parent = nullptr)
        : window_(CreateWindowW(L"Static", L"host", parent == nullptr ? WS_OVERLAPPEDWINDOW | WS_VISIBLE : WS_CHILD, 40,
                                40, 300, 200, parent, nullptr, nullptr, nullptr)) {}
    ~Owner() { DestroyWindow(window_); }
    HWND Handle() const { return window_; }

private:
    HWND window_;
};

TEST(Win32Ending, TheOwnerIsDisabledWhileTheWindowStandsAndEnabledBeforeItGoes) {
    const Owner owner;
    OpenWindow open(owner.Handle());
    open.Run([&] {
        EXPECT_FALSE(IsWindowEnabled(owner.Handle()));
        EXPECT_EQ(GetWindow(open.dialog, GW_OWNER), owner.Handle());
    });
    EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
    EXPECT_EQ(GetActiveWindow(), owner.Handle());
}

TEST(Win32Ending, AnOwnerThatTheHostDisabledStaysSo) {
    const Owner owner;
    EnableWindow(owner.Handle(), FALSE);
    OpenWindow open(owner.Handle());
    EXPECT_TRUE(open.Run({}));
    EXPECT_FALSE(IsWindowEnabled(owner.Handle()));
}

TEST(Win32Ending, AChildWindowStandsForTheWindowAroundIt) {
    const Owner owner;
    const Owner child(owner.Handle());
    OpenWindow open(child.Handle());
    open.Run([&] { EXPECT_FALSE(IsWindowEnabled(owner.Handle())); });
    EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
}

TEST(Win32Ending, AnOwnerThatIsGoneCountsAsNone) {
    HWND gone;
    {
        const Owner owner;
        gone = owner.Handle();
    }
    OpenWindow open(gone);
    EXPECT_TRUE(open.Run([&] { EXPECT_EQ(GetWindow(open.dialog, GW_OWNER), nullptr); }));
    OpenWindow wild(reinterpret_cast<HWND>(static_cast<LONG_PTR>(0x7BADBAD)));
    EXPECT_TRUE(wild.Run({}));
}

TEST(Win32Ending, TheOwnersEndEndsTheWindow) {
    const Owner owner;
    OpenWindow open(owner.Handle());
    EXPECT_TRUE(open.Run([&] {
        open.Do([&](QuickViewWindow&) { DestroyWindow(owner.Handle()); });
        for (int tries = 0; tries < 500 && IsWindow(open.dialog); ++tries) Sleep(10);
    }));
    EXPECT_EQ(Count(open.recorder.Take(), "cancel"), 0); // nobody decided
    EXPECT_FALSE(IsWindow(open.dialog));
}

TEST(Win32Ending, TheEndOfAnOwnerOfAnotherThreadEndsTheWindow) {
    std::atomic<HWND> handle = nullptr;
    std::atomic<bool> destroy = false;
    std::thread hostThread([&] {
        const Owner owner;
        handle = owner.Handle();
        MSG message;
        while (!destroy) {
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
            Sleep(1);
        }
    });
    while (handle == nullptr) Sleep(1);
    OpenWindow open(handle);
    EXPECT_TRUE(open.Run([&] {
        destroy = true;
        for (int tries = 0; tries < 500 && IsWindow(open.dialog); ++tries) Sleep(10);
        EXPECT_FALSE(IsWindow(open.dialog));
    }));
    hostThread.join();
}

TEST(Win32Ending, TheHostsQuitEndsTheWindowAndStaysForTheHost) {
    const Owner owner;
    OpenWindow open(owner.Handle());
    EXPECT_TRUE(open.Run([&] {
        open.Do([](QuickViewWindow&) { PostQuitMessage(17); });
        for (int tries = 0; tries < 500 && IsWindow(open.dialog); ++tries) Sleep(10);
    }));
    EXPECT_EQ(Count(open.recorder.Take(), "cancel"), 0);
    EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) DispatchMessageW(&message);
    EXPECT_EQ(message.message, UINT{WM_QUIT});
    EXPECT_EQ(message.wParam, 17U);
}

TEST(Win32Ending, AQuitThatWaitsAlreadyEndsTheWindowAtOnce) {
    PostQuitMessage(3);
    OpenWindow open;
    EXPECT_TRUE(open.recorder.window->DoModal());
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 3U);
}

TEST(Win32Ending, TheEndInsideAMessageThatWasSentIsNoticed) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) { window.EndDialog(); });
        for (int tries = 0; tries < 500 && IsWindow(open.dialog); ++tries) Sleep(10);
        EXPECT_FALSE(IsWindow(open.dialog));
    });
    EXPECT_EQ(Count(open.recorder.Take(), "cancel"), 0);
}

TEST(Win32Ending, TheEndAlsoEndsTheAboutBox) {
    OpenWindow open;
    open.recorder.onCommand = [&](int32) { open.recorder.window->ShowAbout(); };
    open.Run([&] {
        PostMessageW(open.Item(kAboutButton), BM_CLICK, 0, 0);
        HWND about = nullptr;
        for (int tries = 0; tries < 500 && about == nullptr; ++tries) {
            Sleep(10);
            about = FindWindowW(L"#32770", ORV_ABOUT_TITLE);
        }
        ASSERT_NE(about, nullptr);
        EXPECT_FALSE(IsWindowEnabled(open.dialog));
        for (int tries = 0; tries < 500 && !IsWindowVisible(about); ++tries) Sleep(10); // found before it is complete
        wchar_t text[80] = L"";
        GetWindowTextW(GetWindow(GetWindow(about, GW_CHILD), GW_HWNDNEXT), text, 80);
        EXPECT_STREQ(text, L"Kelmont Version 1.0  for Dravik");
    });
    EXPECT_EQ(Count(open.recorder.Take(), "cancel"), 1);
    EXPECT_EQ(FindWindowW(L"#32770", ORV_ABOUT_TITLE), nullptr);
}

TEST(Win32Ending, NothingIsToldAfterTheEnd) {
    OpenWindow open;
    open.Run([&] {
        open.Do([&](QuickViewWindow& window) {
            open.recorder.Take();
            window.EndDialog();
            SendMessageW(open.dialog, WM_CLOSE, 0, 0);
            SendMessageW(open.Item(kPlainOk), BM_CLICK, 0, 0);
            window.Post(WindowMessage::previewBitmap);
        });
        for (int tries = 0; tries < 500 && IsWindow(open.dialog); ++tries) Sleep(10);
    });
    EXPECT_TRUE(open.recorder.Take().empty());
}

TEST(Win32Ending, WorkersMayPostWhileTheWindowEnds) {
    for (int i = 0; i < 10; ++i) {
        OpenWindow open;
        std::atomic<bool> stop = false;
        std::thread worker([&] {
            for (int posted = 0; !stop; ++posted) {
                open.recorder.window->Post(WindowMessage::previewBitmap);
                if (posted % 10 == 0) Sleep(1);
            }
        });
        EXPECT_TRUE(open.Run({}));
        stop = true;
        worker.join();
    }
}

TEST(Win32Ending, GarbageFromAnywhereDoesNoHarm) {
    const Owner owner;
    OpenWindow open(owner.Handle());
    const TestPicture picture(300, 200);
    open.recorder.onMessage = [&](WindowMessage) { open.recorder.window->SetPreview(picture.View()); };
    EXPECT_TRUE(open.Run([&] {
        constexpr UINT kMessages[] = {WM_USER + 20,  WM_USER + 30,  WM_COMMAND,     WM_HSCROLL,     WM_NOTIFY,
                                      WM_DRAWITEM,   WM_SIZE,       WM_SETCURSOR,   WM_LBUTTONDOWN, WM_MOUSEMOVE,
                                      WM_SHOWWINDOW, WM_VSCROLL,    WM_MEASUREITEM, WM_TIMER,       WM_QUERYDRAGICON,
                                      WM_CHAR,       WM_INITDIALOG, WM_NULL,        WM_USER + 5,    WM_APP};
        std::uint32_t state = 12345;
        const auto next = [&state] { return state = state * 1664525U + 1013904223U; };
        for (int i = 0; i < 3000; ++i) {
            const UINT message = kMessages[next() % std::size(kMessages)];
            WPARAM w = next() % 5 == 0 ? next() : MAKEWPARAM(next() % 2 == 0 ? 1000 + next() % 50 : next(), next() % 9);
            if (message == WM_COMMAND && LOWORD(w) == IDCANCEL) continue; // that would be the Esc key
            const LPARAM l = next() % 3 == 0 ? static_cast<LPARAM>(next()) : static_cast<LPARAM>(next() % 70'000);
            PostMessageW(open.dialog, message, w, l);
            if (i % 100 == 0) open.Settle();
        }
        for (const WPARAM command : {WPARAM{SC_MINIMIZE}, WPARAM{SC_RESTORE}, WPARAM{0x0010}, WPARAM{0x1230}}) {
            PostMessageW(open.dialog, WM_SYSCOMMAND, command, 0);
        }
        open.Settle();
        EXPECT_TRUE(IsWindow(open.dialog));
    }));
    EXPECT_EQ(Count(open.recorder.Take(), "cancel"), 1);
    EXPECT_TRUE(IsWindowEnabled(owner.Handle()));
}

TEST(Win32Ending, WildPointersInSentMessagesAreNotFollowed) {
    OpenWindow open;
    open.Run([&] {
        open.Do([&](QuickViewWindow&) {
            for (const LPARAM wild : {LPARAM{0}, LPARAM{1}, static_cast<LPARAM>(-1), LPARAM{0x12345678}}) {
                SendMessageW(open.dialog, WM_NOTIFY, kToleranceSlider, wild);
                SendMessageW(open.dialog, WM_DRAWITEM, kSkinOk, wild);
            }
            DRAWITEMSTRUCT record{};
            record.CtlType = ODT_MENU;
            SendMessageW(open.dialog, WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&record));
            record.CtlType = ODT_BUTTON;
            record.CtlID = kSkinOk; // without a skin, and of another window
            SendMessageW(open.dialog, WM_DRAWITEM, kSkinOk, reinterpret_cast<LPARAM>(&record));
            record.hwndItem = open.Item(kSkinOk);
            SendMessageW(open.dialog, WM_DRAWITEM, kSkinOk, reinterpret_cast<LPARAM>(&record));
            const NMHDR other{open.Item(kPlainOk), kToleranceSlider, static_cast<UINT>(NM_RELEASEDCAPTURE)};
            open.recorder.Take();
            SendMessageW(open.dialog, WM_NOTIFY, kToleranceSlider, reinterpret_cast<LPARAM>(&other));
            EXPECT_EQ(Count(open.recorder.Take(), "released 0"), 0);
        });
        EXPECT_TRUE(IsWindow(open.dialog));
    });
}

TEST(Win32Ending, AnEndThatIsOnlyClaimedLeavesNoWindowBehind) {
    OpenWindow open;
    EXPECT_TRUE(open.Run([&] {
        open.Do([&](QuickViewWindow&) {
            SendMessageW(open.dialog, WM_DESTROY, 0, 0);
            SendMessageW(open.dialog, WM_NCDESTROY, 0, 0);
        });
        for (int tries = 0; tries < 500 && IsWindow(open.dialog); ++tries) Sleep(10);
    }));
    EXPECT_FALSE(IsWindow(open.dialog));
}

TEST(Win32Ending, TheDesktopIsNoOwner) {
    OpenWindow open(GetDesktopWindow());
    EXPECT_TRUE(open.Run([&] { EXPECT_TRUE(IsWindowEnabled(GetDesktopWindow())); }));
}

TEST(Win32Ending, CommandsOfHiddenAndDisabledControlsAreNotTold) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) { window.EnableControl(kPlainOk, false); });
        open.recorder.Take();
        SendMessageW(open.dialog, WM_COMMAND, kPlainOk, 0);
        SendMessageW(open.dialog, WM_COMMAND, kTurnOn1, 0);
        SendMessageW(open.dialog, WM_COMMAND, IDOK, 0);
        SendMessageW(open.dialog, WM_COMMAND, 4711, 0);
        SendMessageW(open.dialog, WM_COMMAND, kPlainClear, 0);
        EXPECT_EQ(open.recorder.Take(), std::vector<std::string>{"command 1016"});
    });
}

TEST(Win32Ending, AnIconicWindowPaintsItsIcon) {
    OpenWindow open;
    open.Run([&] {
        SendMessageW(open.dialog, WM_SYSCOMMAND, SC_MINIMIZE, 0);
        open.Do([&](QuickViewWindow&) {
            EXPECT_TRUE(IsIconic(open.dialog));
            SendMessageW(open.dialog, WM_PAINT, 0, 0);
        });
        SendMessageW(open.dialog, WM_SYSCOMMAND, SC_RESTORE, 0);
        EXPECT_FALSE(IsIconic(open.dialog));
    });
}

TEST(Win32Ending, NoHandlesStay) {
    const TestPicture first(400, 400), second(300, 400, 9);
    const auto round = [&] {
        const Owner owner;
        OpenWindow open(owner.Handle());
        open.recorder.onInit = [&] { open.recorder.window->SetPreview(first.View()); };
        open.Run([&] {
            open.Do([&](QuickViewWindow& window) {
                for (int i = 0; i < 5; ++i) window.SetPreview((i % 2 == 0 ? first : second).View());
                window.SetCursor(Cursor::wait);
            });
        });
    };
    for (int i = 0; i < 3; ++i) round();
    const int drawing = GdiHandles(), windows = UserHandles();
    for (int i = 0; i < 50; ++i) round();
    EXPECT_LE(GdiHandles(), drawing + 2);
    EXPECT_LE(UserHandles(), windows + 2);
}

TEST(Win32Confirm, StandsHalfASecondWithTheThumbnailAndLeavesNothing) {
    const TestPicture thumbnail(150, 110);
    ShowFaceConfirmWin32(thumbnail.View());
    const int drawing = GdiHandles(), windows = UserHandles();
    int different = -1;
    SIZE size{};
    std::thread watcher([&] {
        HWND dialog = nullptr;
        for (int tries = 0; tries < 100 && dialog == nullptr; ++tries) {
            Sleep(5);
            dialog = FindWindowW(L"#32770", ORV_CONFIRM_TITLE);
        }
        Sleep(200);
        RECT place;
        GetWindowRect(dialog, &place);
        size = {place.right - place.left, place.bottom - place.top};
        const auto style = static_cast<DWORD>(GetWindowLongW(dialog, GWL_EXSTYLE));
        EXPECT_EQ(style & (WS_EX_TOPMOST | WS_EX_TOOLWINDOW), DWORD{WS_EX_TOPMOST | WS_EX_TOOLWINDOW});
        PostMessageW(dialog, WM_KEYDOWN, VK_ESCAPE, 1);
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        const Pixels shown = PixelsOf(GetDlgItem(dialog, kConfirmPicture));
        different = 0;
        for (int y = 0; y < 110; ++y) {
            for (int x = 0; x < 150; ++x)
                different += shown.width == 150 && shown.At(x, y) == thumbnail.At(x, y) ? 0 : 1;
        }
    });
    const DWORD start = GetTickCount();
    ShowFaceConfirmWin32(thumbnail.View());
    const DWORD stood = GetTickCount() - start;
    watcher.join();
    EXPECT_GE(stood, 490U);
    EXPECT_LT(stood, 5000U);
    EXPECT_EQ(size.cx, 150 + 26);
    EXPECT_EQ(size.cy, 110 + 43);
    EXPECT_EQ(different, 0);
    EXPECT_EQ(FindWindowW(L"#32770", ORV_CONFIRM_TITLE), nullptr);
    EXPECT_LE(GdiHandles(), drawing + 2);
    EXPECT_LE(UserHandles(), windows + 2);
}

TEST(Win32Confirm, NothingIsShownOfNoPicture) {
    const DWORD start = GetTickCount();
    ShowFaceConfirmWin32({nullptr, 10, 10});
    EXPECT_LT(GetTickCount() - start, 400U);
}

} // namespace
} // namespace orvane::test
