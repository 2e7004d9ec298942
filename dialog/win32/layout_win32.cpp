#include "dialog/win32/layout_win32.h"

#include "session/controls.h"

namespace orvane {
namespace {

struct Place {
    int id, x, y, width, height; // dialog units
};

#define ORV_PLACE(kind, id, text, x, y, width, height, start) {id, x, y, width, height},
constexpr Place kPlaces[] = {ORV_QUICK_VIEW_CONTROLS(ORV_PLACE)};
#undef ORV_PLACE

constexpr UINT kPlaceOnly = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;

/// What a window of this style measures around a client area.
SIZE OuterSize(HWND window, int width, int height) {
    RECT outer{0, 0, width, height};
    AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE)));
    return {outer.right - outer.left, outer.bottom - outer.top};
}

} // namespace

BaseUnits BaseUnitsOf(HWND dialog) {
    RECT units{0, 0, 4, 8};
    if (!MapDialogRect(dialog, &units)) return kLeastBaseUnits;
    return {static_cast<int>(units.right), static_cast<int>(units.bottom)};
}

void SizeAround(HWND window, int width, int height) {
    const SIZE size = OuterSize(window, width, height);
    SetWindowPos(window, nullptr, 0, 0, size.cx, size.cy, kPlaceOnly | SWP_NOMOVE);
}

void LayOutQuickView(HWND dialog, BaseUnits units) {
    const auto across = [units](int value) { return MulDiv(value, units.width, 4); };
    const auto down = [units](int value) { return MulDiv(value, units.height, 8); };
    for (const Place& place : kPlaces) {
        const HWND control = GetDlgItem(dialog, place.id);
        if (control == nullptr) continue;
        SetWindowPos(control, nullptr, across(place.x), down(place.y), across(place.width), down(place.height),
                     kPlaceOnly);
    }
    RECT before;
    GetWindowRect(dialog, &before);
    const SIZE size = OuterSize(dialog, across(ORV_QUICK_VIEW_WIDTH), down(ORV_QUICK_VIEW_HEIGHT));
    SetWindowPos(dialog, nullptr, (before.left + before.right - size.cx) / 2,
                 (before.top + before.bottom - size.cy) / 2, size.cx, size.cy, kPlaceOnly);
}

} // namespace orvane
