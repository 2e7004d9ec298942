// The windows of Windows, by the system's own dialogs and controls.
#include "dialog/win32/face_confirm_win32.h"
#include "dialog/win32/module_win32.h"
#include "dialog/win32/quick_view_win32.h"
#include "dialog/win32/text_win32.h"
#include "dialog/window_system.h"

#include <new>

namespace orvane {
namespace {

/// False in a service, whose windows nobody would ever see or close.
bool IsDesktopVisible() {
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

/// The surest question is a window that is never shown.
bool CanCreateWindow() {
    const HWND probe = CreateWindowExW(WS_EX_TOOLWINDOW, L"Static", nullptr, WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                       ThisModule(), nullptr);
    return probe != nullptr && DestroyWindow(probe);
}

class WindowSystemWin32 final : public WindowSystem {
public:
    bool CanOpenWindow() override { return IsDesktopVisible() && CanCreateWindow(); }

    QuickViewWindow* CreateQuickView(WindowEvents& events, void* owner) override {
        return new (std::nothrow) QuickViewWin32(events, static_cast<HWND>(owner));
    }

    void ShowFaceConfirm(PictureView thumbnail) override { ShowFaceConfirmWin32(thumbnail); }

    void ShowMessage(const char* text) override {
        if (CanOpenWindow()) MessageBoxA(GetActiveWindow(), text, "Orvane - Kelmont", MB_OK | MB_SETFOREGROUND);
    }

    bool IsWindowHandle(void* handle) override { return IsWindow(static_cast<HWND>(handle)) != FALSE; }

    void WriteText(uint8* bits, int32 width, int32 height, const TextMark& mark) override {
        WriteTextWin32(bits, width, height, mark);
    }
};

} // namespace

WindowSystem& ThisWindowSystem() {
    static WindowSystemWin32 system;
    return system;
}

} // namespace orvane
