// What the operator does arrives at the session, and nothing else.
#include "tests/window/win32/open_window.h"

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Events = std::vector<std::string>;

Events Only(const Events& events, const std::string& kind) {
    Events result;
    std::copy_if(events.begin(), events.end(), std::back_inserter(result),
                 [&](const std::string& event) { return event.starts_with(kind); });
    return result;
}

TEST(Win32Events, OpeningTellsInitThenShowAndClosingTellsCancel) {
    OpenWindow open;
    EXPECT_TRUE(open.Run({}));
    const Events events = open.recorder.Take();
    ASSERT_GE(events.size(), 3U);
    EXPECT_EQ(events[0], "init");
    EXPECT_EQ(events[1], "show");
    EXPECT_EQ(events.back(), "cancel");
}

TEST(Win32Events, TheEndInsideInitShowsNoWindow) {
    OpenWindow open;
    open.recorder.onInit = [&] { open.recorder.window->EndDialog(); };
    EXPECT_TRUE(open.recorder.window->DoModal());
    EXPECT_THAT(open.recorder.Take(), ElementsAre("init"));
}

TEST(Win32Events, EachButtonTellsItsNumber) {
    OpenWindow open;
    open.Run([&] {
        for (const int32 id : {kPlainOk, kPlainClear, kCancelButton, kAboutButton, kTurnBack90, kToleranceUp}) {
            open.Do([id](QuickViewWindow& window) { window.ShowControl(id, true); });
            open.recorder.Take();
            SendMessageW(open.Item(id), BM_CLICK, 0, 0);
            EXPECT_THAT(Only(open.recorder.Take(), "command"), ElementsAre("command " + std::to_string(id)));
        }
    });
}

TEST(Win32Events, EscAndTheCloseBoxCancel) {
    OpenWindow escaped;
    escaped.Run([&] {
        escaped.recorder.Take();
        escaped.Key(VK_ESCAPE);
    });
    EXPECT_EQ(Only(escaped.recorder.Take(), "cancel").size(), 1U);

    OpenWindow closed;
    closed.Run([&] {
        closed.recorder.Take();
        SendMessageW(closed.dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
    });
    EXPECT_EQ(Only(closed.recorder.Take(), "cancel").size(), 1U);
}

TEST(Win32Events, EnterClicksTheDefaultButton) {
    OpenWindow open;
    open.Run([&] {
        for (const int32 id : {kPlainOk, kSkinOk, kPlainClear}) {
            open.Do([id](QuickViewWindow& window) {
                window.ShowControl(id, true);
                window.SetDefaultButton(id);
                window.ShowControl(kRotationEdit, true);
                window.FocusControl(kRotationEdit);
            });
            open.recorder.Take();
            open.Key(VK_RETURN);
            EXPECT_THAT(Only(open.recorder.Take(), "command"), ElementsAre("command " + std::to_string(id)));
        }
    });
}

TEST(Win32Events, EnterClicksTheSkinnedOkThatHasTheFocusAndNeverTheHiddenPlainOne) {
    OpenWindow open;
    open.recorder.onInit = [&] {
        QuickViewWindow& window = *open.recorder.window;
        window.ShowControl(kPlainOk, false);
        window.SetDefaultButton(kSkinOk);
        window.FocusControl(kSkinOk);
        window.ShowControl(kSkinOk, true);
    };
    open.Run([&] {
        EXPECT_EQ(open.Focus(), open.Item(kSkinOk));
        open.recorder.Take();
        open.Key(VK_RETURN);
        EXPECT_THAT(Only(open.recorder.Take(), "command"), ElementsAre("command 1007"));
        open.Do([](QuickViewWindow& window) { window.SetDefaultButton(kPlainOk); });
        open.Do([](QuickViewWindow& window) { window.FocusControl(kPreview); });
        open.recorder.Take();
        open.Key(VK_RETURN);
        EXPECT_THAT(Only(open.recorder.Take(), "command"), IsEmpty());
    });
}

TEST(Win32Events, ADisabledDefaultButtonDoesNothing) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) {
            window.SetDefaultButton(kPlainOk);
            window.FocusControl(kPlainOk);
            window.EnableControl(kPlainOk, false);
        });
        EXPECT_EQ(open.Focus(), open.Item(kPreview)); // the keyboard is still served
        open.recorder.Take();
        open.Key(VK_RETURN);
        open.Key(VK_SPACE);
        EXPECT_THAT(Only(open.recorder.Take(), "c"), IsEmpty());
        open.Key(VK_ESCAPE);
        EXPECT_EQ(Only(open.recorder.Take(), "cancel").size(), 1U);
    });
}

TEST(Win32Events, AnEditTellsEachChangeTheSessionsToo) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) {
            window.ShowControl(kToleranceEdit, true);
            window.FocusControl(kToleranceEdit);
        });
        open.recorder.Take();
        SendMessageW(open.Item(kToleranceEdit), WM_CHAR, L'7', 0);
        EXPECT_THAT(Only(open.recorder.Take(), "edit"), ElementsAre("edit 1003"));
        SendMessageW(open.Item(kToleranceEdit), WM_CHAR, L'x', 0); // digits only
        EXPECT_THAT(Only(open.recorder.Take(), "edit"), IsEmpty());
        EXPECT_EQ(open.Text(kToleranceEdit), L"7");
        open.Do([](QuickViewWindow& window) { window.SetText(kRotationEdit, L"30"); });
        EXPECT_THAT(Only(open.recorder.Take(), "edit"), ElementsAre("edit 1024"));
    });
}

/// Where the slider's thumb stands, in its client coordinates.
LPARAM ThumbOf(HWND slider, int32 position) {
    RECT channel;
    SendMessageW(slider, TBM_GETCHANNELRECT, 0, reinterpret_cast<LPARAM>(&channel));
    RECT client;
    GetClientRect(slider, &client);
    const LONG x = channel.left + 6 + (channel.right - channel.left - 12) * position / 99;
    return MAKELPARAM(x, (client.top + client.bottom) / 2);
}

TEST(Win32Events, TheSliderTellsItsReleaseAndNothingWhileItIsDragged) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) {
            window.ShowControl(kToleranceSlider, true);
            window.SetSliderRange(0, 99);
            window.SetSliderPosition(40);
        });
        const HWND slider = open.Item(kToleranceSlider);
        open.recorder.Take();
        SendMessageW(slider, WM_LBUTTONDOWN, MK_LBUTTON, ThumbOf(slider, 40));
        SendMessageW(slider, WM_MOUSEMOVE, MK_LBUTTON, ThumbOf(slider, 60));
        SendMessageW(slider, WM_MOUSEMOVE, MK_LBUTTON, ThumbOf(slider, 80));
        EXPECT_THAT(Only(open.recorder.Take(), "released"), IsEmpty());
        int32 dragged = 0;
        open.Do([&](QuickViewWindow& window) { dragged = window.SliderPosition(); });
        EXPECT_NEAR(dragged, 80, 6);
        SendMessageW(slider, WM_LBUTTONUP, 0, ThumbOf(slider, 80));
        EXPECT_THAT(Only(open.recorder.Take(), "released"), ElementsAre("released " + std::to_string(dragged)));
    });
}

TEST(Win32Events, TheSliderTellsTheReleaseOfItsKeys) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) {
            window.ShowControl(kToleranceSlider, true);
            window.SetSliderRange(0, 99);
            window.SetSliderPosition(40);
            window.FocusControl(kToleranceSlider);
        });
        const HWND slider = open.Item(kToleranceSlider);
        open.recorder.Take();
        SendMessageW(slider, WM_KEYDOWN, VK_RIGHT, 1);
        SendMessageW(slider, WM_KEYDOWN, VK_RIGHT, 1);
        EXPECT_THAT(Only(open.recorder.Take(), "released"), IsEmpty());
        SendMessageW(slider, WM_KEYUP, VK_RIGHT, 1);
        EXPECT_THAT(Only(open.recorder.Take(), "released"), ElementsAre("released 42"));
        open.Key(VK_HOME);
        EXPECT_THAT(Only(open.recorder.Take(), "released"), ElementsAre("released 0"));
    });
}

TEST(Win32Events, MousePositionsCountFromThePreviewsFirstPixel) {
    OpenWindow open;
    open.Run([&] {
        POINT first{0, 0};
        ClientToScreen(open.Item(kPreview), &first);
        ScreenToClient(open.dialog, &first);
        open.recorder.Take();
        SendMessageW(open.dialog, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(first.x, first.y));
        SendMessageW(open.dialog, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(first.x + 30, first.y + 40));
        SendMessageW(open.dialog, WM_LBUTTONUP, 0, MAKELPARAM(first.x + 31, first.y + 42));
        SendMessageW(open.dialog, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(first.x - 3, first.y - 4));
        SendMessageW(open.dialog, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(first.x, first.y)); // no second corner
        EXPECT_THAT(open.recorder.Take(), ElementsAre("down 11 12", "move 41 52", "up 42 54", "down 8 8"));
        // The places of the two at the system's own font.
        EXPECT_EQ(first.x, 11);
        EXPECT_EQ(first.y, 12);
    });
}

TEST(Win32Events, PressesOnThePreviewLabelsAndGroupsGoToTheDialogThoseOnDisabledButtonsToNobody) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) {
            for (const int32 id : {kPrompt, kToleranceLabel, kToleranceGroup}) window.ShowControl(id, true);
            window.EnableControl(kPlainClear, false);
        });
        for (const int32 id : {kPreview, kPrompt, kToleranceLabel, kToleranceGroup}) {
            EXPECT_EQ(SendMessageW(open.Item(id), WM_NCHITTEST, 0, 0), HTTRANSPARENT) << id;
        }
        RECT clear;
        GetWindowRect(open.Item(kPlainClear), &clear);
        POINT middle{(clear.left + clear.right) / 2, (clear.top + clear.bottom) / 2};
        ScreenToClient(open.dialog, &middle);
        open.recorder.Take();
        SendMessageW(open.dialog, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(middle.x, middle.y));
        EXPECT_THAT(open.recorder.Take(), IsEmpty());
    });
}

TEST(Win32Events, TheSystemMenusEntryIsAskedOfTheSession) {
    OpenWindow open;
    open.Run([&] {
        open.recorder.Take();
        SendMessageW(open.dialog, WM_SYSCOMMAND, ORV_ABOUT_COMMAND | 3, 0);
        EXPECT_THAT(open.recorder.Take(), ElementsAre("system 16"));
    });
}

TEST(Win32Events, EachPostedMessageArrivesOnceAndInOrder) {
    OpenWindow open;
    open.Run([&] {
        open.recorder.Take();
        for (int i = 0; i < 20; ++i) {
            open.recorder.window->Post(WindowMessage::previewBitmap); // from a thread that is not the window's
            if (i % 3 == 0) open.recorder.window->Post(WindowMessage::animateMark);
        }
        open.Settle();
        Events expected;
        for (int i = 0; i < 20; ++i) {
            expected.emplace_back("message 20");
            if (i % 3 == 0) expected.emplace_back("message 30");
        }
        EXPECT_EQ(Only(open.recorder.Take(), "message"), expected);
    });
}

TEST(Win32Events, AMessageThatPostsItselfStarvesNeitherPaintingNorTheEnd) {
    OpenWindow open;
    int served = 0;
    open.recorder.onMessage = [&](WindowMessage message) {
        ++served;
        open.recorder.window->Post(message);
    };
    open.Run([&] {
        open.recorder.window->Post(WindowMessage::animateMark);
        while (served < 10) Sleep(1);
        InvalidateRect(open.dialog, nullptr, TRUE);
        InvalidateRect(open.Item(kPlainOk), nullptr, TRUE);
        for (int tries = 0; tries < 200 && GetUpdateRect(open.Item(kPlainOk), nullptr, FALSE); ++tries) Sleep(10);
        EXPECT_FALSE(GetUpdateRect(open.Item(kPlainOk), nullptr, FALSE));
    });
    EXPECT_EQ(Only(open.recorder.Take(), "cancel").size(), 1U);
}

TEST(Win32Events, TheCursorStaysAsTheSessionSetIt) {
    OpenWindow open;
    open.Run([&] {
        const auto cursorAfter = [&](Cursor cursor) {
            HCURSOR found = nullptr;
            open.Do([&](QuickViewWindow& window) {
                window.SetCursor(cursor);
                ::SetCursor(nullptr);
                SendMessageW(open.dialog, WM_SETCURSOR, reinterpret_cast<WPARAM>(open.dialog),
                             MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
                found = ::GetCursor();
            });
            return found;
        };
        EXPECT_EQ(cursorAfter(Cursor::cross), LoadCursorW(nullptr, IDC_CROSS));
        EXPECT_EQ(cursorAfter(Cursor::arrow), LoadCursorW(nullptr, IDC_ARROW));
        HCURSOR waiting = nullptr, after = nullptr;
        open.Do([&](QuickViewWindow& window) {
            window.SetCursor(Cursor::cross);
            window.SetCursor(Cursor::wait);
            waiting = ::GetCursor();
        });
        open.Settle();
        open.Do([&](QuickViewWindow&) { after = ::GetCursor(); });
        EXPECT_EQ(waiting, LoadCursorW(nullptr, IDC_WAIT));
        EXPECT_EQ(after, LoadCursorW(nullptr, IDC_CROSS));
    });
}

} // namespace
} // namespace orvane::test
