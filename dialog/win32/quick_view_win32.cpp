// The controls of the operator's window: what the session asks of them. The dialog's own messages are served
// in quick_view_messages.cpp.
#include "dialog/win32/quick_view_win32.h"

#include "dialog/win32/layout_win32.h"
#include "dialog/win32/module_win32.h"
#include "dialog/win32/preview_control.h"

#include <commctrl.h>

namespace orvane {
namespace {

constexpr UINT kStay = SWP_NOZORDER | SWP_NOACTIVATE;

INT_PTR CALLBACK AboutProc(HWND dialog, UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_INITDIALOG:
        if (GetWindowLongPtrW(dialog, DWLP_USER) != 0) return FALSE; // not the system's
        SetWindowLongPtrW(dialog, DWLP_USER, l);
        *reinterpret_cast<HWND*>(l) = dialog;
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(w) != IDOK && LOWORD(w) != IDCANCEL) return FALSE;
        EndDialog(dialog, 0);
        return TRUE;
    case WM_CLOSE:
        EndDialog(dialog, 0);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

CHoverBitmapButton* QuickViewWin32::SkinOf(int32 id) {
    for (Skin& skin : skins_) {
        if (skin.id == id) return &skin.button;
    }
    return nullptr;
}

/// The keyboard would be dead on a control that is hidden or disabled. On the preview it is served, and no
/// key clicks a button that the operator never went to.
void QuickViewWin32::FocusAway(HWND control) {
    if (GetFocus() == control) SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(kPreview)), TRUE);
}

RECT QuickViewWin32::PlaceOf(HWND control) const {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

/// Some buttons share a place: the one that is shown last lies on top and takes the clicks, also those that a
/// disabled one beneath would swallow. The others do not draw over it.
void QuickViewWin32::RaiseAbovePlaceMates(HWND control) {
    const RECT place = PlaceOf(control);
    HWND topmost = control;
    for (HWND other = GetWindow(control, GW_HWNDLAST); other != nullptr; other = GetWindow(other, GW_HWNDPREV)) {
        const RECT there = PlaceOf(other);
        if (other == control || EqualRect(&place, &there) == FALSE) continue;
        SetWindowLongPtrW(other, GWL_STYLE, GetWindowLongPtrW(other, GWL_STYLE) | WS_CLIPSIBLINGS);
        topmost = other;
    }
    if (topmost == control) return;
    const HWND above = GetWindow(topmost, GW_HWNDPREV);
    if (above == control) return;
    SetWindowPos(control, above != nullptr ? above : HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void QuickViewWin32::ShowControl(int32 id, bool shown) {
    const HWND control = Item(id);
    if (control == nullptr) return;
    if (!shown) FocusAway(control);
    if (shown) RaiseAbovePlaceMates(control);
    ShowWindow(control, shown ? SW_SHOWNA : SW_HIDE);
}

void QuickViewWin32::EnableControl(int32 id, bool enabled) {
    const HWND control = Item(id);
    if (control == nullptr) return;
    if (!enabled) FocusAway(control);
    EnableWindow(control, enabled);
}

void QuickViewWin32::FocusControl(int32 id) {
    const HWND control = Item(id);
    if (control == nullptr) return;
    SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
    focusSet_ = true;
}

void QuickViewWin32::SetDefaultButton(int32 id) {
    if (Item(id) != nullptr) SendMessageW(window_, DM_SETDEFID, static_cast<WPARAM>(id), 0);
}

void QuickViewWin32::MoveControl(int32 id, int32 place) {
    const HWND control = Item(id), target = Item(place);
    if (control == nullptr || target == nullptr) return;
    const RECT there = PlaceOf(target);
    SetWindowPos(control, nullptr, there.left, there.top, 0, 0, kStay | SWP_NOSIZE);
}

void QuickViewWin32::UpdateControl(int32 id) {
    if (const HWND control = Item(id)) UpdateWindow(control);
}

void QuickViewWin32::SetTitle(const wchar_t* title) {
    if (window_ != nullptr) SetWindowTextW(window_, title);
}

void QuickViewWin32::SetText(int32 id, const wchar_t* text) {
    if (const HWND control = Item(id)) SetWindowTextW(control, text);
}

int32 QuickViewWin32::GetText(int32 id, wchar_t* text, int32 capacity) {
    if (text == nullptr || capacity < 1) return 0;
    text[0] = L'\0';
    const HWND control = Item(id);
    return control == nullptr ? 0 : GetWindowTextW(control, text, capacity);
}

void QuickViewWin32::SetSliderRange(int32 least, int32 greatest) {
    const HWND slider = Item(kToleranceSlider);
    if (slider == nullptr) return;
    SendMessageW(slider, TBM_SETRANGEMIN, FALSE, least);
    SendMessageW(slider, TBM_SETRANGEMAX, TRUE, greatest);
}

void QuickViewWin32::SetSliderPosition(int32 position) {
    if (const HWND slider = Item(kToleranceSlider)) SendMessageW(slider, TBM_SETPOS, TRUE, position);
}

int32 QuickViewWin32::SliderPosition() {
    const HWND slider = Item(kToleranceSlider);
    return slider == nullptr ? 0 : static_cast<int32>(SendMessageW(slider, TBM_GETPOS, 0, 0));
}

void QuickViewWin32::SetPreview(PictureView picture) {
    const HWND control = Item(kPreview);
    if (control == nullptr) return;
    OwnedBitmap bitmap = CopyOf(picture);
    if (bitmap == nullptr) return; // the picture before stays
    const RECT placeBefore = PlaceOf(control);
    const HBITMAP before = ChangePicture(control, bitmap.get());
    // Some versions of the control show a copy of their own, and give that back.
    if (before != nullptr && before != preview_.get()) DeleteObject(before);
    preview_ = std::move(bitmap);
    SizeAround(control, picture.width, picture.height);
    const RECT place = PlaceOf(control);
    if (EqualRect(&place, &placeBefore) == FALSE) {
        RedrawWindow(window_, &placeBefore, nullptr, RDW_INVALIDATE | RDW_ERASE);
        RedrawWindow(control, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME);
    }
    RepaintPreview();
    UpdateWindow(window_); // what a larger picture covered until now
}

void QuickViewWin32::ReleasePreview() {
    if (const HWND control = Item(kPreview)) {
        const HBITMAP before = ChangePicture(control, nullptr);
        if (before != nullptr && before != preview_.get()) DeleteObject(before);
    }
    preview_.reset();
}

void QuickViewWin32::RepaintPreview() {
    if (const HWND control = Item(kPreview)) RedrawWindow(control, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

bool QuickViewWin32::LoadSkin(int32 id, const std::filesystem::path::value_type* file, ColourRef transparent) {
    CHoverBitmapButton* const button = SkinOf(id);
    return button != nullptr && Item(id) != nullptr && button->LoadSkin(file, transparent);
}

void QuickViewWin32::ResetSkin(int32 id) {
    if (CHoverBitmapButton* const button = SkinOf(id)) button->ResetState();
}

void QuickViewWin32::SetCursor(Cursor cursor) {
    if (window_ == nullptr) return;
    waiting_ = cursor == Cursor::wait;
    if (!waiting_) cursor_ = cursor;
    ShowTheCursor();
}

/// The wait cursor ends by itself when the loop is reached again, so it is no state of the window.
void QuickViewWin32::ShowTheCursor() const {
    LPCWSTR name = IDC_ARROW;
    if (waiting_) {
        name = IDC_WAIT;
    } else if (cursor_ == Cursor::cross) {
        name = IDC_CROSS;
    }
    ::SetCursor(LoadCursorW(nullptr, name));
}

void QuickViewWin32::ShowAbout() {
    if (!IsServing() || about_ != nullptr) return;
    DialogBoxParamW(ThisModule(), MAKEINTRESOURCEW(ORV_ABOUT_DIALOG), window_, AboutProc,
                    reinterpret_cast<LPARAM>(&about_));
    about_ = nullptr;
}

void QuickViewWin32::Rest(int32 milliseconds) {
    if (window_ != nullptr && milliseconds > 0) Sleep(static_cast<DWORD>(milliseconds));
}

void QuickViewWin32::Post(WindowMessage message) {
    const std::lock_guard lock(postMutex_); // no message may reach another window that was given our handle
    if (postTarget_ != nullptr) PostMessageW(postTarget_, WM_USER + static_cast<UINT>(message), 0, 0);
}

} // namespace orvane
