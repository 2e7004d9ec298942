// The life of the operator's window: opening, its message loop, its end, and what each message of the system
// tells the session. Messages may come from anywhere with anything in them; none is trusted.
#include "dialog/win32/layout_win32.h"
#include "dialog/win32/module_win32.h"
#include "dialog/win32/preview_control.h"
#include "dialog/win32/quick_view_win32.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <string>

namespace orvane {
namespace {

constexpr UINT kPreviewMessage = WM_USER + static_cast<UINT>(WindowMessage::previewBitmap);
constexpr UINT kAnimateMessage = WM_USER + static_cast<UINT>(WindowMessage::animateMark);

// An owner of another thread may go without taking the window along.
constexpr UINT_PTR kOwnerTimer = 1;
constexpr UINT kOwnerTimerMilliseconds = 250;

bool IsOwnMessage(UINT message) { return message == kPreviewMessage || message == kAnimateMessage; }

/// Copies a structure that a message points to; the pointer may be wild.
template <typename T>
bool ReadFrom(LPARAM address, T& to) {
    SIZE_T read = 0;
    return ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<LPCVOID>(address), &to, sizeof to, &read) &&
           read == sizeof to;
}

OwnedIcon LoadMainIcon(int width, int height) {
    return OwnedIcon(static_cast<HICON>(
        LoadImageW(ThisModule(), MAKEINTRESOURCEW(ORV_MAIN_ICON), IMAGE_ICON, width, height, LR_DEFAULTCOLOR)));
}

void AddAboutEntry(HWND dialog) {
    std::array<wchar_t, 256> text{};
    if (LoadStringW(ThisModule(), ORV_ABOUT_ENTRY, text.data(), static_cast<int>(text.size())) < 1) return;
    const HMENU menu = GetSystemMenu(dialog, FALSE);
    if (menu == nullptr) return;
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu, MF_STRING, ORV_ABOUT_COMMAND, text.data());
}

/// Whether a point of the dialog's client area lies on a disabled button or edit, whose clicks the system
/// gives to the dialog.
bool IsOnDisabledControl(HWND dialog, POINT point) {
    MapWindowPoints(dialog, nullptr, &point, 1);
    for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr; control = GetWindow(control, GW_HWNDNEXT)) {
        RECT place;
        if (IsWindowVisible(control) && !IsWindowEnabled(control) && GetWindowRect(control, &place) &&
            PtInRect(&place, point) && (SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_STATIC) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace

bool QuickViewWin32::DoModal() {
    if (window_ != nullptr) return false;
    const PlainPixels pixels;
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
    opened_ = ended_ = false;
    if (owner_ != nullptr && IsWindow(owner_)) owner_ = GetAncestor(owner_, GA_ROOT);
    if (!IsWindow(owner_) || owner_ == GetDesktopWindow()) owner_ = nullptr; // the desktop can't be disabled
    ownerDisabled_ = owner_ != nullptr && !EnableWindow(owner_, FALSE);
    const HWND created = CreateDialogParamW(ThisModule(), MAKEINTRESOURCEW(ORV_QUICK_VIEW_DIALOG), owner_, DialogProc,
                                            reinterpret_cast<LPARAM>(this));
    WPARAM exitCode = 0;
    bool quit = false;
    if (IsServing()) {
        ShowWindow(window_, SW_SHOWNORMAL);
        // The first window of a program may be shown as whoever started it wished: hidden, or as an icon.
        if (window_ != nullptr && !IsWindowVisible(window_)) ShowWindow(window_, SW_SHOW);
        if (window_ != nullptr && IsIconic(window_)) ShowWindow(window_, SW_RESTORE);
        quit = RunLoop(exitCode);
    }
    Close(created);
    if (quit) PostQuitMessage(static_cast<int>(exitCode)); // the host's own loop has to end too
    return opened_;
}

bool QuickViewWin32::RunLoop(WPARAM& exitCode) {
    bool yield = false;
    while (IsServing()) {
        if (waiting_) {
            waiting_ = false;
            ShowTheCursor();
        }
        MSG message;
        // Posted messages come before input and painting. After each of the window's own these have a turn,
        // however many wait.
        if (!yield || !PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_INPUT | PM_QS_PAINT)) {
            if (GetMessageW(&message, nullptr, 0, 0) < 0) return false;
        }
        if (message.message == WM_QUIT) {
            exitCode = message.wParam;
            return true;
        }
        yield = message.hwnd == window_ && IsOwnMessage(message.message);
        for (const Skin& skin : skins_) skin.button.PreTranslateMessage(message);
        if (IsDialogMessageW(window_, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return false;
}

void QuickViewWin32::EndDialog() {
    if (!IsServing()) return;
    ended_ = true;
    // Loops inside ours end first: the about box, a menu, a drag.
    if (about_ != nullptr) ::EndDialog(about_, 0);
    SendMessageW(window_, WM_CANCELMODE, 0, 0);
    // A loop that waits looks up only for a message of its own queue, and this call may stand in one that was sent.
    PostMessageW(window_, WM_NULL, 0, 0);
}

void QuickViewWin32::Close(HWND created) {
    ended_ = true;
    EnableOwner(); // before the window goes, so that the owner is what the system activates
    if (created != nullptr && IsWindow(created)) DestroyWindow(created);
    largeIcon_.reset();
    smallIcon_.reset();
}

void QuickViewWin32::EnableOwner() {
    if (ownerDisabled_ && IsWindow(owner_)) EnableWindow(owner_, TRUE);
    ownerDisabled_ = false;
}

INT_PTR CALLBACK QuickViewWin32::DialogProc(HWND dialog, UINT message, WPARAM w, LPARAM l) {
    auto* self = reinterpret_cast<QuickViewWin32*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (self == nullptr && message == WM_INITDIALOG) { // any later one comes from elsewhere
        self = reinterpret_cast<QuickViewWin32*>(l);
        self->window_ = dialog;
        SetWindowLongPtrW(dialog, DWLP_USER, l);
    }
    if (self == nullptr) return FALSE;
    try {
        return self->OnMessage(message, w, l);
    } catch (...) {
        return FALSE; // the system's code above this can't be unwound
    }
}

void QuickViewWin32::OnInit(HWND dialog) {
    opened_ = true;
    {
        const std::lock_guard lock(postMutex_);
        postTarget_ = dialog;
    }
    const BaseUnits units = BaseUnitsOf(dialog);
    if (units.width < kLeastBaseUnits.width || units.height < kLeastBaseUnits.height) {
        LayOutQuickView(dialog,
                        {std::max(units.width, kLeastBaseUnits.width), std::max(units.height, kLeastBaseUnits.height)});
    }
    AddAboutEntry(dialog);
    largeIcon_ = LoadMainIcon(GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON));
    smallIcon_ = LoadMainIcon(GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON));
    SendMessageW(dialog, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(largeIcon_.get()));
    SendMessageW(dialog, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(smallIcon_.get()));
    if (owner_ != nullptr && GetWindowThreadProcessId(owner_, nullptr) != GetCurrentThreadId()) {
        SetTimer(dialog, kOwnerTimer, kOwnerTimerMilliseconds, nullptr);
    }
    for (Skin& skin : skins_) skin.button.Attach(Item(skin.id));
    if (const HWND preview = Item(kPreview)) DrawWithoutFlicker(preview);
    focusSet_ = false;
    events_.OnInitDialog();
}

INT_PTR QuickViewWin32::OnMessage(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_INITDIALOG:
        if (!opened_) OnInit(window_);
        return focusSet_ ? FALSE : TRUE; // TRUE lets the dialog choose the focus
    case WM_NCDESTROY:
        SetWindowLongPtrW(window_, DWLP_USER, 0);
        window_ = nullptr;
        // A window that is destroyed from another thread goes within a sent message; the loop has to wake.
        PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
        return FALSE;
    case WM_DESTROY:
        OnDestroy();
        return FALSE;
    case WM_DRAWITEM:
        return OnDrawItem(l);
    case WM_PAINT:
        return OnPaint();
    case WM_QUERYDRAGICON:
        return reinterpret_cast<INT_PTR>(largeIcon_.get());
    case WM_SETCURSOR:
        return OnSetCursor(w, l);
    default:
        break;
    }
    if (!IsServing()) return FALSE;
    switch (message) {
    case WM_SHOWWINDOW:
        events_.OnShowWindow();
        return FALSE;
    case WM_SYSCOMMAND:
        return events_.OnSysCommand(static_cast<int32>(w));
    case WM_CLOSE:
        events_.OnCancel();
        return TRUE;
    case WM_COMMAND:
        return OnCommand(w, l);
    case WM_NOTIFY:
        return OnNotify(w, l);
    case WM_HSCROLL:
        OnHScroll(w, l);
        return FALSE;
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
        OnMouse(message, l);
        return FALSE;
    case WM_TIMER:
        if (w == kOwnerTimer && owner_ != nullptr && !IsWindow(owner_)) events_.OnCancel();
        return FALSE;
    case kPreviewMessage:
        events_.OnMessage(WindowMessage::previewBitmap);
        return TRUE;
    case kAnimateMessage:
        events_.OnMessage(WindowMessage::animateMark);
        return TRUE;
    default:
        return FALSE;
    }
}

bool QuickViewWin32::OnCommand(WPARAM w, LPARAM l) {
    const int32 id = LOWORD(w);
    const HWND control = Item(id);
    if (id == IDCANCEL) { // the Esc key
        events_.OnCancel();
        return true;
    }
    if (HIWORD(w) == EN_CHANGE && control != nullptr && reinterpret_cast<HWND>(l) == control) {
        events_.OnEditChanged(id);
        return true;
    }
    if (HIWORD(w) != BN_CLICKED || control == nullptr) return false;
    // Enter may ask for a default button that nobody could click.
    const auto style = static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE));
    if ((style & WS_VISIBLE) == 0 || (style & WS_DISABLED) != 0) return true;
    events_.OnCommand(id);
    return true;
}

bool QuickViewWin32::OnNotify(WPARAM w, LPARAM l) {
    NMHDR header;
    if (w != static_cast<WPARAM>(kToleranceSlider) || !ReadFrom(l, header)) return false;
    if (header.hwndFrom != Item(kToleranceSlider) || header.code != static_cast<UINT>(NM_RELEASEDCAPTURE)) return false;
    events_.OnToleranceReleased();
    return true;
}

/// A key moves the thumb without capturing the mouse; its release is the value then.
void QuickViewWin32::OnHScroll(WPARAM w, LPARAM l) {
    const HWND slider = Item(kToleranceSlider);
    if (slider == nullptr || reinterpret_cast<HWND>(l) != slider) return;
    const bool byMouse = GetCapture() == slider;
    switch (LOWORD(w)) {
    case TB_LINEUP:
    case TB_LINEDOWN:
    case TB_PAGEUP:
    case TB_PAGEDOWN:
    case TB_TOP:
    case TB_BOTTOM:
        sliderKeyed_ = !byMouse;
        return;
    case TB_ENDTRACK:
        if (sliderKeyed_ && !byMouse) events_.OnToleranceReleased();
        sliderKeyed_ = false;
        return;
    default:
        return;
    }
}

bool QuickViewWin32::OnDrawItem(LPARAM l) {
    DRAWITEMSTRUCT record;
    if (!ReadFrom(l, record) || record.CtlType != ODT_BUTTON) return false;
    CHoverBitmapButton* const button = SkinOf(static_cast<int32>(record.CtlID));
    if (button == nullptr || record.hwndItem != Item(static_cast<int32>(record.CtlID))) return false;
    button->DrawItem(record);
    return true;
}

bool QuickViewWin32::OnPaint() {
    if (!IsIconic(window_)) return false;
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(window_, &paint);
    if (dc == nullptr) return false;
    SendMessageW(window_, WM_ICONERASEBKGND, reinterpret_cast<WPARAM>(dc), 0);
    RECT area;
    GetClientRect(window_, &area);
    const int x = (area.right - GetSystemMetrics(SM_CXICON) + 1) / 2;
    const int y = (area.bottom - GetSystemMetrics(SM_CYICON) + 1) / 2;
    if (largeIcon_ != nullptr) DrawIcon(dc, x, y, largeIcon_.get());
    EndPaint(window_, &paint);
    return true;
}

/// The dialog's default would bring back the arrow with each move of the mouse.
bool QuickViewWin32::OnSetCursor(WPARAM w, LPARAM l) const {
    if (reinterpret_cast<HWND>(w) != window_ || LOWORD(l) != HTCLIENT) return false;
    ShowTheCursor();
    SetWindowLongPtrW(window_, DWLP_MSGRESULT, TRUE);
    return true;
}

void QuickViewWin32::OnMouse(UINT message, LPARAM l) {
    POINT point{GET_X_LPARAM(l), GET_Y_LPARAM(l)};
    const HWND preview = Item(kPreview);
    if (preview == nullptr || IsOnDisabledControl(window_, point)) return;
    MapWindowPoints(window_, preview, &point, 1);
    const auto x = static_cast<int32>(point.x) + kPreviewLeft;
    const auto y = static_cast<int32>(point.y) + kPreviewTop;
    if (message == WM_MOUSEMOVE) {
        events_.OnMouseMove(x, y);
    } else if (message == WM_LBUTTONUP) {
        events_.OnLButtonUp(x, y);
    } else {
        events_.OnLButtonDown(x, y);
    }
}

void QuickViewWin32::OnDestroy() {
    {
        const std::lock_guard lock(postMutex_);
        postTarget_ = nullptr;
    }
    EnableOwner();
    ReleasePreview();
    for (Skin& skin : skins_) skin.button.Detach();
    SendMessageW(window_, WM_SETICON, ICON_BIG, 0);
    SendMessageW(window_, WM_SETICON, ICON_SMALL, 0);
    waiting_ = false;
}

} // namespace orvane
