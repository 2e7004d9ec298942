// How many handles of windows and drawing objects the process holds. Where the system keeps no count, they are counted
// here.
#pragma once

#include <windows.h>

#include <vector>

namespace orvane::test {

/// Drawing objects: bitmaps, brushes, fonts, device contexts. Without a count the room that is left tells it.
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

/// Windows of the process, those inside of others and those for messages alone included.
inline int OwnWindows() {
    std::vector<HWND> parents = {GetDesktopWindow(), HWND_MESSAGE};
    int count = 0;
    while (!parents.empty()) {
        const HWND parent = parents.back();
        parents.pop_back();
        for (HWND window = nullptr; (window = FindWindowExW(parent, window, nullptr, nullptr)) != nullptr;) {
            DWORD process = 0;
            GetWindowThreadProcessId(window, &process);
            if (process != GetCurrentProcessId()) continue;
            ++count;
            parents.push_back(window);
        }
    }
    return count;
}

/// Windows, menus, icons and cursors, accelerator tables. The table of these handles is shared by all processes, so
/// each place of it is asked whether something of this process lies there.
inline int UserHandles() {
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)) return static_cast<int>(count);
    int count = OwnWindows();
    for (ULONG_PTR place = 32; place < 65536; place += 2) {
        const auto handle = reinterpret_cast<HANDLE>(place);
        ICONINFO icon{};
        if (GetIconInfo(static_cast<HICON>(handle), &icon)) {
            DeleteObject(icon.hbmMask);
            if (icon.hbmColor != nullptr) DeleteObject(icon.hbmColor);
            ++count;
        } else if (IsMenu(static_cast<HMENU>(handle)) ||
                   CopyAcceleratorTableW(static_cast<HACCEL>(handle), nullptr, 0) > 0) {
            ++count;
        }
    }
    return count;
}

} // namespace orvane::test
