// The operator's window as a dialog of the system. It translates between the system's messages and the
// session; while it is open it lives on one thread.
#pragma once

#include "dialog/win32/gdi.h"
#include "dialog/win32/skin_button.h"
#include "session/controls.h"
#include "session/window.h"

#include <array>
#include <mutex>

namespace orvane {

class QuickViewWin32 final : public QuickViewWindow {
public:
    /// @param owner the host's window, which the dialog stands above and disables; null or dead for none
    QuickViewWin32(WindowEvents& events, HWND owner) : events_(events), owner_(owner) {}
    ~QuickViewWin32() override = default;
    QuickViewWin32(const QuickViewWin32&) = delete;
    QuickViewWin32& operator=(const QuickViewWin32&) = delete;

    bool DoModal() override;
    void EndDialog() override;

    bool HasControl(int32 id) override { return Item(id) != nullptr; }
    void ShowControl(int32 id, bool shown) override;
    void EnableControl(int32 id, bool enabled) override;
    void FocusControl(int32 id) override;
    void SetDefaultButton(int32 id) override;
    void MoveControl(int32 id, int32 place) override;
    void UpdateControl(int32 id) override;

    void SetTitle(const wchar_t* title) override;
    void SetText(int32 id, const wchar_t* text) override;
    int32 GetText(int32 id, wchar_t* text, int32 capacity) override;

    void SetSliderRange(int32 least, int32 greatest) override;
    void SetSliderPosition(int32 position) override;
    int32 SliderPosition() override;

    void SetPreview(PictureView picture) override;
    void RepaintPreview() override;

    bool LoadSkin(int32 id, const std::filesystem::path::value_type* file, ColourRef transparent) override;
    void ResetSkin(int32 id) override;

    void SetCursor(Cursor cursor) override;
    void ShowAbout() override;
    void Rest(int32 milliseconds) override;

    void Post(WindowMessage message) override;

private:
    struct Skin {
        int32 id;
        CHoverBitmapButton button;
    };

    static INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM w, LPARAM l);
    INT_PTR OnMessage(UINT message, WPARAM w, LPARAM l);
    void OnInit(HWND dialog);
    bool OnCommand(WPARAM w, LPARAM l);
    bool OnNotify(WPARAM w, LPARAM l);
    void OnHScroll(WPARAM w, LPARAM l);
    bool OnDrawItem(LPARAM l);
    bool OnSetCursor(WPARAM w, LPARAM l) const;
    bool OnPaint();
    void OnMouse(UINT message, LPARAM l);
    void OnDestroy();

    /// Serves messages until the window ends. True when the thread's loop was told to end, with its code.
    bool RunLoop(WPARAM& exitCode);
    void Close(HWND created);
    void EnableOwner();
    void ShowTheCursor() const;
    void FocusAway(HWND control);
    /// Where a control lies in the window.
    RECT PlaceOf(HWND control) const;
    void RaiseAbovePlaceMates(HWND control);
    void ReleasePreview();

    bool IsServing() const { return window_ != nullptr && !ended_; }
    HWND Item(int32 id) const { return window_ == nullptr ? nullptr : GetDlgItem(window_, id); }
    CHoverBitmapButton* SkinOf(int32 id);

    WindowEvents& events_;
    HWND owner_;
    HWND window_ = nullptr;
    HWND about_ = nullptr;
    bool opened_ = false;
    bool ended_ = false;
    bool ownerDisabled_ = false;
    bool focusSet_ = false;
    bool sliderKeyed_ = false; // a key moves the slider
    bool waiting_ = false;     // the wait cursor shows
    Cursor cursor_ = Cursor::arrow;
    OwnedBitmap preview_;
    OwnedIcon largeIcon_;
    OwnedIcon smallIcon_;
    std::array<Skin, 3> skins_{{{kSkinOk, {}}, {kSkinClear, {}}, {kSkinColor, {}}}};
    std::mutex postMutex_; // postTarget_ against the window's end
    HWND postTarget_ = nullptr;
};

} // namespace orvane
