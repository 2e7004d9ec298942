#include "dialog/win32/face_confirm_win32.h"

#include "dialog/win32/gdi.h"
#include "dialog/win32/layout_win32.h"
#include "dialog/win32/module_win32.h"
#include "session/controls.h"

namespace orvane {
namespace {

constexpr int32 kFrameWidth = 26; // what the dialog has around the thumbnail
constexpr int32 kFrameHeight = 43;
constexpr DWORD kStandsMilliseconds = 500;

struct Thumbnail {
    HBITMAP bitmap;
    int32 width, height;
};

/// Keys and clicks of the half second belong to nobody: the window that stands behind must not take an Esc
/// or the second half of a double click for its own.
void DropInput() {
    MSG message;
    for (const auto& [first, last] : {std::pair<UINT, UINT>{WM_KEYFIRST, WM_KEYLAST}, {WM_LBUTTONDOWN, WM_MOUSELAST}}) {
        while (PeekMessageW(&message, nullptr, first, last, PM_REMOVE | PM_QS_INPUT)) {
            if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
        }
    }
}

void OnClose(HWND dialog, const Thumbnail& thumbnail) {
    const HWND picture = GetDlgItem(dialog, kConfirmPicture);
    const auto set = [picture](HBITMAP bitmap) {
        return SendMessageW(picture, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap));
    };
    set(thumbnail.bitmap);
    SizeAround(picture, thumbnail.width, thumbnail.height);
    SetWindowPos(dialog, nullptr, 0, 0, thumbnail.width + kFrameWidth, thumbnail.height + kFrameHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_SHOWWINDOW);
    RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush(); // on the screen before the thread rests
    Sleep(kStandsMilliseconds);
    DropInput();
    set(nullptr);
    EndDialog(dialog, 0);
}

INT_PTR CALLBACK ConfirmProc(HWND dialog, UINT message, WPARAM, LPARAM data) {
    switch (message) {
    case WM_INITDIALOG:
        if (GetWindowLongPtrW(dialog, DWLP_USER) != 0) return FALSE; // not the system's
        SetWindowLongPtrW(dialog, DWLP_USER, data);
        PostMessageW(dialog, WM_CLOSE, 0, 0);
        return TRUE;
    case WM_CLOSE:
        OnClose(dialog, *reinterpret_cast<const Thumbnail*>(GetWindowLongPtrW(dialog, DWLP_USER)));
        return TRUE;
    default:
        return FALSE; // a command, the Esc key's too, has no meaning here
    }
}

} // namespace

void ShowFaceConfirmWin32(PictureView thumbnail) {
    const PlainPixels pixels;
    const OwnedBitmap bitmap = CopyOf(thumbnail);
    if (bitmap == nullptr) return;
    const Thumbnail data{bitmap.get(), thumbnail.width, thumbnail.height};
    DialogBoxParamW(ThisModule(), MAKEINTRESOURCEW(ORV_CONFIRM_DIALOG), nullptr, ConfirmProc,
                    reinterpret_cast<LPARAM>(&data));
}

} // namespace orvane
