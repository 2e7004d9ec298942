#include "dialog/win32/skin_button.h"

#include <commctrl.h>

namespace orvane {

void CHoverBitmapButton::Attach(HWND button) {
    if (button == nullptr) return;
    if (SetWindowSubclass(button, ButtonProc, 0, reinterpret_cast<DWORD_PTR>(this))) m_window = button;
}

void CHoverBitmapButton::Detach() {
    if (m_window != nullptr) RemoveWindowSubclass(m_window, ButtonProc, 0);
    m_window = nullptr;
}

bool CHoverBitmapButton::LoadSkin(const wchar_t* path, COLORREF transparent) {
    if (m_window == nullptr || !m_strip.Load(path)) return false;
    m_transparent = transparent;
    m_faceRect = {0, 0, m_strip.m_faceWidth, m_strip.m_height};
    GetWindowRect(m_window, &m_windowRect);
    MapWindowPoints(nullptr, GetParent(m_window), reinterpret_cast<POINT*>(&m_windowRect), 2);
    m_windowRect.right = m_windowRect.left + m_strip.m_faceWidth;
    m_windowRect.bottom = m_windowRect.top + m_strip.m_height;
    MoveWindow(m_window, m_windowRect.left, m_windowRect.top, m_strip.m_faceWidth, m_strip.m_height, TRUE);
    return m_strip.m_height > 1;
}

void CHoverBitmapButton::PreTranslateMessage(const MSG& message) const {
    if (m_toolTip == nullptr || message.hwnd != m_window) return;
    MSG relayed = message;
    SendMessageW(m_toolTip, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

void CHoverBitmapButton::DrawItem(const DRAWITEMSTRUCT& record) {
    int32 face = 0;
    if (m_disabled) {
        face = 3;
    } else if ((record.itemState & ODS_SELECTED) != 0) {
        face = 2;
    } else if (m_hover) {
        face = 1;
    }
    // What the button does not erase may still show another face through this one's transparent pixels.
    const LRESULT brush = SendMessageW(GetParent(record.hwndItem), WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(record.hDC),
                                       reinterpret_cast<LPARAM>(record.hwndItem));
    if (brush != 0) FillRect(record.hDC, &record.rcItem, reinterpret_cast<HBRUSH>(brush));
    m_strip.DrawFace(record.hDC, face, 0, 0, m_transparent);
}

void CHoverBitmapButton::ResetState() { m_disabled = m_tracking = m_hover = m_useCursor = FALSE; }

LRESULT CALLBACK CHoverBitmapButton::ButtonProc(HWND, UINT message, WPARAM w, LPARAM l, UINT_PTR, DWORD_PTR self) {
    return reinterpret_cast<CHoverBitmapButton*>(self)->OnMessage(message, w, l);
}

LRESULT CHoverBitmapButton::Default(UINT message, WPARAM w, LPARAM l) const {
    return DefSubclassProc(m_window, message, w, l);
}

void CHoverBitmapButton::OnMouseMove() {
    if (m_tracking) return;
    TRACKMOUSEEVENT request{};
    request.cbSize = sizeof request;
    request.dwFlags = TME_HOVER | TME_LEAVE;
    request.hwndTrack = m_window;
    request.dwHoverTime = 1;
    m_tracking = _TrackMouseEvent(&request);
}

LRESULT CHoverBitmapButton::OnMessage(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_MOUSEMOVE:
        OnMouseMove();
        return Default(message, w, l);
    case WM_MOUSEHOVER:
        m_hover = TRUE;
        InvalidateRect(m_window, nullptr, TRUE);
        return 0;
    case WM_MOUSELEAVE:
        m_tracking = m_hover = FALSE;
        InvalidateRect(m_window, nullptr, TRUE);
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: // a press like any other: the system tells it apart for buttons of this kind
        return m_disabled ? 0 : Default(WM_LBUTTONDOWN, w, l);
    case WM_SETCURSOR:
        if (!m_useCursor) return Default(message, w, l);
        SetCursor(m_cursor);
        return TRUE;
    case WM_ERASEBKGND:
        return TRUE;
    // The dialog makes a button the default one by its style, and that would end its drawing itself. So the
    // style stays and the answer tells what the button is.
    case BM_SETSTYLE:
        m_default = (w & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
        return 0;
    case WM_GETDLGCODE:
        return DLGC_BUTTON | (m_default ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
    case WM_NCDESTROY: {
        const HWND window = m_window;
        Detach();
        return DefSubclassProc(window, message, w, l);
    }
    default:
        return Default(message, w, l);
    }
}

} // namespace orvane
