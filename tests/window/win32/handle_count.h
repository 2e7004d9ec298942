// How many handles of windows and drawing objects the process holds. Where the system keeps no count, the room
// that is left tells it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <vector>

namespace orvane::test {

/// Drawing objects: bitmaps, brushes, fonts, device contexts.
inline int GdiHandles() {
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) return static_cast<int>(count);
    constexpr int kRoom = 65536;
    std::vector<HGDIOBJ> made;
    while (const HGDIOBJ object = CreateSolidBrush(static_cast<COLORREF>(made.size()))) {
        made.push_back(object);
        if (made.size() > kRoom) break;
    }
    for (const HGDIOBJ object : made) DeleteObject(object);
    return kRoom - static_cast<int>(made.size());
}

/// Windows, menus and icons. Without a count: how far the table of handles reaches once its gaps are filled.
inline int UserHandles() {
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)) return static_cast<int>(count);
    const BYTE none[128] = {};
    std::vector<HICON> made;
    int last = 0;
    for (int i = 0; i < 1000; ++i) {
        made.push_back(CreateIcon(nullptr, 32, 32, 1, 1, none, none));
        last = std::max(last, static_cast<int>(LOWORD(reinterpret_cast<ULONG_PTR>(made.back()))));
    }
    for (const HICON icon : made) DestroyIcon(icon);
    return last;
}

} // namespace orvane::test
