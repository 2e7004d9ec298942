// What the other tests count handles with notices one of each kind.
#include "tests/window/win32/handle_count.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(HandleCount, OfDrawingObjectsNoticesOne) {
    const int before = test::GdiHandles();
    const HBITMAP bitmap = CreateBitmap(8, 8, 1, 1, nullptr);
    EXPECT_EQ(test::GdiHandles(), before + 1);
    DeleteObject(bitmap);
    EXPECT_EQ(test::GdiHandles(), before);
}

HWND Window(DWORD style, HWND parent) {
    return CreateWindowW(L"STATIC", L"", style, 0, 0, 10, 10, parent, nullptr, nullptr, nullptr);
}

TEST(HandleCount, OfWindowsNoticesOneOfEachKind) {
    const HWND first = Window(WS_OVERLAPPED, nullptr); // it may bring others along
    const BYTE none[128] = {};
    ACCEL key = {FVIRTKEY, VK_F1, 1};
    const int before = test::UserHandles();

    const HWND top = Window(WS_OVERLAPPED, nullptr);
    EXPECT_EQ(test::UserHandles(), before + 1) << "a window of its own";
    const HWND inside = Window(WS_CHILD, top);
    EXPECT_EQ(test::UserHandles(), before + 2) << "a window inside of it";
    const HWND unseen = Window(0, HWND_MESSAGE);
    EXPECT_EQ(test::UserHandles(), before + 3) << "a window for messages alone";
    const HMENU menu = CreatePopupMenu();
    EXPECT_EQ(test::UserHandles(), before + 4) << "a menu";
    const HICON icon = CreateIcon(nullptr, 32, 32, 1, 1, none, none);
    EXPECT_EQ(test::UserHandles(), before + 5) << "an icon";
    const HACCEL keys = CreateAcceleratorTableW(&key, 1);
    EXPECT_EQ(test::UserHandles(), before + 6) << "an accelerator table";

    DestroyAcceleratorTable(keys);
    DestroyIcon(icon);
    DestroyMenu(menu);
    DestroyWindow(unseen);
    DestroyWindow(inside);
    DestroyWindow(top);
    EXPECT_EQ(test::UserHandles(), before);
    DestroyWindow(first);
}

} // namespace
} // namespace orvane
