// The controls of the operator's window stand as their list says, and do what the session asks of them.
#include "dialog/win32/layout_win32.h"
#include "dialog/window_system.h"
#include "tests/window/win32/open_window.h"
#include "tests/window/win32/screen_pixels.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

struct Row {
    const char* kind;
    int32 id;
    const wchar_t* text;
    int32 x, y, width, height;
    const char* start;
};

#define ORV_ROW(kind, id, text, x, y, width, height, start) {#kind, id, text, x, y, width, height, #start},
constexpr Row kRows[] = {ORV_QUICK_VIEW_CONTROLS(ORV_ROW)};

bool IsShown(HWND control) { return (GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) != 0; }

RECT PlaceOf(HWND control) {
    RECT place;
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

TEST(Win32Controls, WindowsCanBeOpenedHere) { EXPECT_TRUE(ThisWindowSystem().CanOpenWindow()); }

TEST(Win32Controls, StandByTheirListWithTextAndVisibility) {
    OpenWindow open;
    open.Run([&] {
        for (const Row& row : kRows) {
            SCOPED_TRACE(row.id);
            const HWND control = open.Item(row.id);
            ASSERT_NE(control, nullptr);
            EXPECT_EQ(open.Text(row.id), row.text);
            EXPECT_EQ(IsShown(control), std::string(row.start) == "SHOWN");
            EXPECT_TRUE(IsWindowEnabled(control));
        }
        EXPECT_EQ(open.Text(kTurnOn90), std::wstring(L"90") + wchar_t{0xBA});
    });
}

TEST(Win32Controls, StandWhereDialogUnitsPutThemButNeverCloserThanTheLargestPreviewAllows) {
    OpenWindow open;
    open.Run([&] {
        BaseUnits units = BaseUnitsOf(open.dialog);
        units = {std::max(units.width, 6), std::max(units.height, 13)};
        for (const Row& row : kRows) {
            SCOPED_TRACE(row.id);
            const RECT place = PlaceOf(open.Item(row.id));
            EXPECT_EQ(place.left, MulDiv(row.x, units.width, 4));
            EXPECT_EQ(place.top, MulDiv(row.y, units.height, 8));
            EXPECT_EQ(place.right - place.left, MulDiv(row.width, units.width, 4));
        }
        RECT client;
        GetClientRect(open.dialog, &client);
        EXPECT_EQ(client.right, MulDiv(ORV_QUICK_VIEW_WIDTH, units.width, 4));
        EXPECT_EQ(client.bottom, MulDiv(ORV_QUICK_VIEW_HEIGHT, units.height, 8));
    });
}

TEST(Win32Controls, ALargerFontMovesThemApart) {
    OpenWindow open;
    open.Run([&] {
        open.Do([&](QuickViewWindow&) { LayOutQuickView(open.dialog, {8, 16}); });
        const RECT ok = PlaceOf(open.Item(kPlainOk));
        EXPECT_EQ(ok.left, 612);
        EXPECT_EQ(ok.top, 444);
        EXPECT_EQ(ok.right - ok.left, 168);
        EXPECT_EQ(ok.bottom - ok.top, 36);
    });
}

TEST(Win32Controls, TheDialogStandsInTheMiddleOfTheScreen) {
    OpenWindow open;
    open.Run([&] {
        RECT place, work;
        GetWindowRect(open.dialog, &place);
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        EXPECT_NEAR(place.left + place.right, work.left + work.right, 3);
        EXPECT_NEAR(place.top + place.bottom, work.top + work.bottom, 3);
    });
}

TEST(Win32Controls, AreShownHiddenEnabledAndMoved) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) {
            window.ShowControl(kToleranceGroup, true);
            window.ShowControl(kPlainClear, false);
            window.EnableControl(kPlainOk, false);
            window.MoveControl(kSkinOk, kCancelButton);
            window.ShowControl(4711, true); // no such control
        });
        EXPECT_TRUE(IsShown(open.Item(kToleranceGroup)));
        EXPECT_FALSE(IsShown(open.Item(kPlainClear)));
        EXPECT_FALSE(IsWindowEnabled(open.Item(kPlainOk)));
        EXPECT_EQ(PlaceOf(open.Item(kSkinOk)).left, PlaceOf(open.Item(kCancelButton)).left);
        EXPECT_EQ(PlaceOf(open.Item(kSkinOk)).top, PlaceOf(open.Item(kCancelButton)).top);
    });
}

TEST(Win32Controls, TakeTextsAndGiveThemBack) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) {
            EXPECT_TRUE(window.HasControl(kPrompt));
            EXPECT_FALSE(window.HasControl(4711));
            window.SetTitle(L"Orvane  -  Kelmont");
            window.SetText(kPrompt, L"Bitte klicken");
            window.SetText(kRotationEdit, L"12345");
            wchar_t text[8] = L"zzzzzzz";
            EXPECT_EQ(window.GetText(kRotationEdit, text, 3), 2);
            EXPECT_STREQ(text, L"12");
            EXPECT_EQ(window.GetText(kRotationEdit, text, 8), 5);
            EXPECT_EQ(window.GetText(4711, text, 8), 0);
            EXPECT_STREQ(text, L"");
            EXPECT_EQ(window.GetText(kRotationEdit, text, 0), 0);
            EXPECT_EQ(window.GetText(kRotationEdit, nullptr, 8), 0);
        });
        EXPECT_EQ(open.Text(kPrompt), L"Bitte klicken");
        wchar_t title[64];
        GetWindowTextW(open.dialog, title, 64);
        EXPECT_STREQ(title, L"Orvane  -  Kelmont");
    });
}

TEST(Win32Controls, TheSliderKeepsRangeAndPosition) {
    OpenWindow open;
    open.Run([&] {
        open.Do([](QuickViewWindow& window) {
            window.SetSliderRange(0, 99);
            for (const int32 position : {0, 40, 99}) {
                window.SetSliderPosition(position);
                EXPECT_EQ(window.SliderPosition(), position);
            }
            window.SetSliderPosition(1000);
            EXPECT_EQ(window.SliderPosition(), 99);
        });
        const auto style = GetWindowLongW(open.Item(kToleranceSlider), GWL_STYLE);
        EXPECT_NE(style & 0x0010, 0); // no ticks
    });
}

TEST(Win32Controls, TheSystemMenuHasTheAboutEntryAndTheWindowItsIcons) {
    OpenWindow open;
    open.Run([&] {
        wchar_t text[80] = L"";
        const HMENU menu = GetSystemMenu(open.dialog, FALSE);
        GetMenuStringW(menu, ORV_ABOUT_COMMAND, text, 80, MF_BYCOMMAND);
        EXPECT_STREQ(text, L"&About OrvaneFaceDetection-MFC...");
        const int last = GetMenuItemCount(menu) - 1;
        EXPECT_EQ(GetMenuItemID(menu, last), UINT{ORV_ABOUT_COMMAND});
        EXPECT_NE(GetMenuState(menu, static_cast<UINT>(last - 1), MF_BYPOSITION) & MF_SEPARATOR, 0U);
        EXPECT_NE(SendMessageW(open.dialog, WM_GETICON, ICON_BIG, 0), 0);
        EXPECT_NE(SendMessageW(open.dialog, WM_GETICON, ICON_SMALL, 0), 0);
        EXPECT_EQ(SendMessageW(open.dialog, WM_QUERYDRAGICON, 0, 0),
                  SendMessageW(open.dialog, WM_GETICON, ICON_BIG, 0));
    });
}

TEST(Win32Controls, CallsBeforeAndAfterTheDialogAreHarmless) {
    OpenWindow open;
    const auto callAll = [](QuickViewWindow& window) {
        const uint8 pixel[4] = {};
        wchar_t text[4];
        EXPECT_FALSE(window.HasControl(kPlainOk));
        window.ShowControl(kPlainOk, true);
        window.EnableControl(kPlainOk, true);
        window.FocusControl(kPlainOk);
        window.SetDefaultButton(kPlainOk);
        window.MoveControl(kSkinOk, kPlainOk);
        window.UpdateControl(kPlainOk);
        window.SetTitle(L"");
        window.SetText(kPrompt, L"");
        EXPECT_EQ(window.GetText(kPrompt, text, 4), 0);
        window.SetSliderRange(0, 9);
        window.SetSliderPosition(3);
        EXPECT_EQ(window.SliderPosition(), 0);
        window.SetPreview({pixel, 1, 1});
        window.RepaintPreview();
        EXPECT_FALSE(window.LoadSkin(kSkinOk, L"none.bmp", 0));
        window.ResetSkin(kSkinOk);
        window.SetCursor(Cursor::wait);
        window.ShowAbout();
        window.Rest(60'000); // nobody waits for it
        window.Post(WindowMessage::previewBitmap);
        window.EndDialog();
    };
    callAll(*open.recorder.window);
    EXPECT_TRUE(open.Run({}));
    open.recorder.Take();
    callAll(*open.recorder.window);
    EXPECT_TRUE(open.recorder.Take().empty());
}

TEST(Win32Controls, AButtonThatIsShownTakesTheClicksOfItsPlace) {
    OpenWindow open;
    open.Run([&] {
        open.Do([&](QuickViewWindow& window) {
            window.EnableControl(kPlainClear, false);
            window.ShowControl(kPlainFreeze, true);
            RECT place;
            GetWindowRect(open.Item(kPlainFreeze), &place);
            const POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
            EXPECT_EQ(WindowFromPoint(middle), open.Item(kPlainFreeze)) << "not the disabled one that it covers";
            UpdateWindow(open.dialog);
            const Pixels freeze = PixelsOf(open.Item(kPlainFreeze));
            RedrawWindow(open.Item(kPlainClear), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
            EXPECT_EQ(PixelsOf(open.Item(kPlainFreeze)).values, freeze.values) << "drawn over";
            window.ShowControl(kPlainFreeze, false);
            window.ShowControl(kPlainColor, true);
            EXPECT_EQ(WindowFromPoint(middle), open.Item(kPlainColor));
        });
    });
}

} // namespace
} // namespace orvane::test
