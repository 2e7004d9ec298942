// The hand on Windows. Messages are sent, so that each step ends when it was served; keys are posted, since
// the dialog looks for them in the queue.
#include "tests/window/sessions/hand.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <thread>
#include <vector>

namespace orvane::test {
namespace {

constexpr UINT kLongest = 30'000; // milliseconds that a step may take
constexpr wchar_t kTitle[] = L"Orvane  -  Kelmont";

bool WaitFor(const std::function<bool()>& condition) {
    for (UINT waited = 0; waited < kLongest; waited += 5) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

/// A window of this process with a title, a visible one unless told otherwise.
HWND FindOurs(const std::wstring& title, bool visible = true) {
    struct Search {
        const std::wstring& title;
        bool visible;
        HWND found;
    } search{title, visible, nullptr};
    EnumWindows(
        [](HWND window, LPARAM parameter) CALLBACK -> BOOL {
            auto& s = *reinterpret_cast<Search*>(parameter);
            DWORD process = 0;
            GetWindowThreadProcessId(window, &process);
            wchar_t text[128] = L"";
            if (process != GetCurrentProcessId() || (s.visible && !IsWindowVisible(window))) return TRUE;
            InternalGetWindowText(window, text, 128); // asks the system, not a thread that may rest
            if (s.title != text) return TRUE;
            s.found = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

/// The confirmation stands, or is about to: what is typed now goes to it.
bool IsConfirming() { return FindOurs(ORV_CONFIRM_TITLE, false) != nullptr; }

LRESULT Send(HWND window, UINT message, WPARAM first, LPARAM second) {
    DWORD_PTR result = 0;
    SendMessageTimeoutW(window, message, first, second, SMTO_NORMAL, kLongest, &result);
    return static_cast<LRESULT>(result);
}

/// What stands on the screen there; without pixels for a place without any.
ShownPicture OnScreen(const RECT& place) {
    const int width = place.right - place.left, height = place.bottom - place.top;
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr; // stays null for a place without pixels
    HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ before = SelectObject(memory, bitmap);
    ShownPicture picture;
    if (bits != nullptr && BitBlt(memory, 0, 0, width, height, screen, place.left, place.top, SRCCOPY)) {
        GdiFlush();
        picture = ShownPicture({static_cast<const uint8*>(bits), width, height});
    }
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return picture;
}

/// The pixels of a window as they stand on the screen, as a bitmap file.
bool SaveWindow(HWND window, const std::string& file) {
    RECT place;
    if (!GetWindowRect(window, &place)) return false; // it has gone
    const ShownPicture picture = OnScreen(place);
    if (picture.rows.empty()) return false;
    const BITMAPINFOHEADER info{sizeof(BITMAPINFOHEADER), picture.width, picture.height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    BITMAPFILEHEADER header{};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof header + sizeof info;
    header.bfSize = header.bfOffBits + static_cast<DWORD>(picture.rows.size());
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&header), sizeof header);
    out.write(reinterpret_cast<const char*>(&info), sizeof info);
    out.write(reinterpret_cast<const char*>(picture.rows.data()), static_cast<std::streamsize>(picture.rows.size()));
    return out.flush().good();
}

class Win32Hand final : public Hand {
public:
    bool WaitForWindow() override {
        return WaitFor([this] { return IsOpen(); });
    }
    bool IsOpen() override { return Window() != nullptr; }
    bool IsShown(int32 id) override { return IsWindowVisible(Control(id)) != FALSE; }
    bool IsEnabled(int32 id) override { return IsWindowEnabled(Control(id)) != FALSE; }

    ShownPicture Preview() override {
        HWND preview = Control(kPreview);
        RECT client{};
        if (preview == nullptr || !GetClientRect(preview, &client)) return {};
        MapWindowPoints(preview, nullptr, reinterpret_cast<POINT*>(&client), 2);
        return OnScreen(client);
    }
    std::wstring TextOf(int32 id) override {
        wchar_t text[128] = L"";
        SendMessageTimeoutW(Control(id), WM_GETTEXT, 128, reinterpret_cast<LPARAM>(text), SMTO_NORMAL, kLongest,
                            nullptr);
        return text;
    }

    void Click(int32 id) override {
        Hold(id);
        LetGo(id);
    }
    void StartClick(int32 id) override {
        if (HWND control = Usable(id)) PostMessageW(control, BM_CLICK, 0, 0);
    }
    void Press(int32 x, int32 y) override { OnPreview(WM_LBUTTONDOWN, MK_LBUTTON, x, y); }
    void Move(int32 x, int32 y) override { OnPreview(WM_MOUSEMOVE, 0, x, y); }
    void Release(int32 x, int32 y) override { OnPreview(WM_LBUTTONUP, 0, x, y); }
    void HoverOver(int32 id) override {
        HWND control = Usable(id);
        if (control == nullptr) return;
        RECT place;
        GetWindowRect(control, &place);
        SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
        Send(control, WM_MOUSEMOVE, 0, Middle(control));
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    void Hold(int32 id) override {
        if (HWND control = Usable(id)) Send(control, WM_LBUTTONDOWN, MK_LBUTTON, Middle(control));
    }
    void LetGo(int32 id) override {
        HWND control = Control(id);
        if (control != nullptr) Send(control, WM_LBUTTONUP, 0, Middle(control));
    }
    void Type(int32 id, const wchar_t* text) override {
        HWND edit = Usable(id);
        if (edit == nullptr) return;
        Send(edit, EM_SETSEL, 0, -1);
        if (*text == 0) Send(edit, WM_CHAR, VK_BACK, 1);
        for (; *text != 0; ++text) Send(edit, WM_CHAR, *text, 1);
    }
    void DragSlider(int32 position) override {
        HWND slider = Usable(kToleranceSlider);
        if (slider == nullptr) return;
        // The system may take the mouse away while it still gives the window its focus: then a hand grasps again.
        int x = 0, y = 0;
        bool there = false;
        for (int grasp = 0; grasp < 5 && !there; ++grasp) there = Drag(slider, position, x, y);
        EXPECT_TRUE(there) << "the slider does not go there";
        Send(slider, TBM_SETPOS, TRUE, position); // a pixel may be more than a step
        Send(slider, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    }
    void Enter() override { PressKey(VK_RETURN); }
    void Escape() override { PressKey(VK_ESCAPE); }
    void CloseBox() override {
        if (HWND window = Window()) Send(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    }
    void CloseOthers() override {
        HWND about = nullptr;
        if (WaitFor([&] { return (about = FindOurs(ORV_ABOUT_TITLE)) != nullptr; })) Send(about, WM_COMMAND, IDOK, 0);
        WaitFor([] { return FindOurs(ORV_ABOUT_TITLE) == nullptr; });
    }
    void OnWindowsThread(const std::function<void()>& function) override { DuringMessage(Window(), function); }
    bool TakePicture(const std::wstring& title, const std::string& file) override {
        HWND window = nullptr;
        if (!WaitFor([&] { return (window = FindOurs(title)) != nullptr; })) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(150)); // what was drawn reaches the screen
        return SaveWindow(window, file);
    }

private:
    static int32 SliderAt(HWND slider) { return static_cast<int32>(Send(slider, TBM_GETPOS, 0, 0)); }
    /// Grasps the thumb and moves it to a position, a pixel at a time: that is how far a hand knows where the
    /// position lies. False, with the thumb let go, when it does not come along.
    static bool Drag(HWND slider, int32 position, int& x, int& y) {
        RECT thumb{}, client{};
        RedrawWindow(slider, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); // the thumb lies where it was painted
        Send(slider, TBM_GETTHUMBRECT, 0, reinterpret_cast<LPARAM>(&thumb));
        GetClientRect(slider, &client);
        x = (thumb.left + thumb.right) / 2;
        y = (thumb.top + thumb.bottom) / 2;
        Send(slider, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        const int way = SliderAt(slider) < position ? 1 : -1;
        while ((position - SliderAt(slider)) * way > 0 && x > 0 && x < client.right) {
            x += way;
            Send(slider, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, y));
        }
        if (std::abs(SliderAt(slider) - position) <= 2) return true;
        Send(slider, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
        return false;
    }
    HWND Window() { return FindOurs(kTitle); }
    HWND Control(int32 id) {
        HWND window = Window();
        return window == nullptr ? nullptr : GetDlgItem(window, id);
    }
    HWND Usable(int32 id) {
        HWND control = nullptr;
        const bool usable = WaitFor([&] {
            control = Control(id);
            return control != nullptr && IsWindowVisible(control) && IsWindowEnabled(control) && !IsConfirming();
        });
        EXPECT_TRUE(usable) << "control " << id << " can't be used";
        return usable ? control : nullptr;
    }
    static LPARAM Middle(HWND control) {
        RECT place;
        GetClientRect(control, &place);
        return MAKELPARAM(place.right / 2, place.bottom / 2);
    }
    void OnPreview(UINT message, WPARAM keys, int32 x, int32 y) {
        HWND window = Window(), preview = Control(kPreview);
        EXPECT_NE(preview, nullptr) << "no window to press on";
        if (preview == nullptr) return;
        POINT point{x, y};
        MapWindowPoints(preview, window, &point, 1); // a static's client begins with its picture
        Send(window, message, keys, MAKELPARAM(point.x, point.y));
    }
    void PressKey(WPARAM key) {
        HWND window = Window();
        EXPECT_NE(window, nullptr) << "no window to type into";
        if (window == nullptr) return;
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
        HWND target = info.hwndFocus != nullptr ? info.hwndFocus : window;
        PostMessageW(target, WM_KEYDOWN, key, 1);
        PostMessageW(target, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
        Drain(window);
        EXPECT_TRUE(WaitFor([] { return !IsConfirming(); })) << "the confirmation does not go";
    }
    /// Waits until the messages that are posted by now were served.
    static void Drain(HWND window) { DuringMessage(window, nullptr); }
    /// Posts a message that means nothing to the window and waits until the window's thread takes it from its
    /// queue, when it calls a function.
    static void DuringMessage(HWND window, const std::function<void()>& function) {
        static const UINT marker = RegisterWindowMessageW(L"OrvaneTestMarker");
        static std::function<void()> called;
        static HANDLE served;
        called = function;
        served = CreateEventW(nullptr, FALSE, FALSE, nullptr);
        HHOOK hook = SetWindowsHookExW(
            WH_GETMESSAGE,
            [](int code, WPARAM removed, LPARAM parameter) CALLBACK -> LRESULT {
                if (code == HC_ACTION && removed == PM_REMOVE &&
                    reinterpret_cast<const MSG*>(parameter)->message == marker) {
                    if (called) called();
                    SetEvent(served);
                }
                return CallNextHookEx(nullptr, code, removed, parameter);
            },
            nullptr, GetWindowThreadProcessId(window, nullptr));
        PostMessageW(window, marker, 0, 0);
        for (UINT waited = 0; waited < kLongest && IsWindow(window); waited += 20) {
            if (WaitForSingleObject(served, 20) == WAIT_OBJECT_0) break;
        }
        UnhookWindowsHookEx(hook);
        CloseHandle(served);
    }
};

} // namespace

std::unique_ptr<Hand> MakeHand() { return std::make_unique<Win32Hand>(); }

} // namespace orvane::test
