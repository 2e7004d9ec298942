#include "dialog/win32/preview_control.h"

#include "dialog/win32/gdi.h"

#include <commctrl.h>

namespace orvane {
namespace {

constexpr UINT_PTR kSubclass = 1;

HBITMAP PictureOf(HWND control) {
    return reinterpret_cast<HBITMAP>(SendMessageW(control, STM_GETIMAGE, IMAGE_BITMAP, 0));
}

void Paint(HWND control, HBITMAP picture) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(control, &paint);
    if (dc == nullptr) return;
    BITMAP shape{};
    GetObjectW(picture, sizeof shape, &shape);
    if (const OwnedDc memory{CreateCompatibleDC(dc)}) {
        const Selected selected(memory.get(), picture);
        BitBlt(dc, 0, 0, shape.bmWidth, shape.bmHeight, memory.get(), 0, 0, SRCCOPY);
    }
    EndPaint(control, &paint);
}

LRESULT CALLBACK ControlProc(HWND control, UINT message, WPARAM w, LPARAM l, UINT_PTR, DWORD_PTR) {
    switch (message) {
    case WM_ERASEBKGND:
        if (PictureOf(control) != nullptr) return TRUE; // it has the control's size
        break;
    case WM_PAINT:
        if (const HBITMAP picture = PictureOf(control)) {
            Paint(control, picture);
            return 0;
        }
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(control, ControlProc, kSubclass);
        break;
    default:
        break;
    }
    return DefSubclassProc(control, message, w, l);
}

} // namespace

void DrawWithoutFlicker(HWND control) {
    // One that does not centre makes itself as large as its picture, each time; the size around the picture that
    // follows would draw the frame again.
    SetWindowLongPtrW(control, GWL_STYLE, GetWindowLongPtrW(control, GWL_STYLE) | SS_CENTERIMAGE);
    SetWindowSubclass(control, ControlProc, kSubclass, 0);
}

HBITMAP ChangePicture(HWND control, HBITMAP picture) {
    SendMessageW(control, WM_SETREDRAW, FALSE, 0);
    const auto before = SendMessageW(control, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(picture));
    SendMessageW(control, WM_SETREDRAW, TRUE, 0);
    return reinterpret_cast<HBITMAP>(before);
}

} // namespace orvane
