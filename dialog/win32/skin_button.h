// A button that takes its look from a picture file.
#pragma once

#include "dialog/win32/skin_strip.h"

namespace orvane {

/// An owner-drawn button of a dialog. Attached to the control while its window lives; without a skin it
/// draws nothing, and the dialog does not show it.
class CHoverBitmapButton {
public:
    CHoverBitmapButton() = default;
    ~CHoverBitmapButton() { Detach(); }
    CHoverBitmapButton(const CHoverBitmapButton&) = delete;
    CHoverBitmapButton& operator=(const CHoverBitmapButton&) = delete;

    /// Takes over the messages of a control; null is passed over.
    void Attach(HWND button);
    void Detach();

    /// Loads a strip and gives the button the size of its faces, its upper left corner stays. False for a
    /// file that is no such picture, and for one that is a single pixel high (the button then has been
    /// moved).
    bool LoadSkin(const wchar_t* path, COLORREF transparent);
    /// Relays mouse messages to the tool tip, where there is one.
    void PreTranslateMessage(const MSG& message) const;
    /// Draws the face that belongs to the button's state.
    void DrawItem(const DRAWITEMSTRUCT& record);
    /// Not disabled, not hovered over, no cursor of its own.
    void ResetState();

    CKbcBmp m_strip;
    COLORREF m_transparent = 0;
    BOOL m_disabled = FALSE; // shows the last face and swallows presses
    RECT m_faceRect{};
    RECT m_windowRect{};     // in the parent's client coordinates
    BOOL m_tracking = FALSE; // a notice of hovering or leaving is asked for
    BOOL m_hover = FALSE;
    HWND m_toolTip = nullptr;
    BOOL m_useCursor = FALSE;
    HCURSOR m_cursor = nullptr;

private:
    static LRESULT CALLBACK ButtonProc(HWND button, UINT message, WPARAM w, LPARAM l, UINT_PTR id, DWORD_PTR self);
    LRESULT OnMessage(UINT message, WPARAM w, LPARAM l);
    LRESULT Default(UINT message, WPARAM w, LPARAM l) const;
    void OnMouseMove();

    HWND m_window = nullptr;
    bool m_default = false; // the button that Enter clicks, as the dialog told
};

} // namespace orvane
