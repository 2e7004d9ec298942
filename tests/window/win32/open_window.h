// Drives a window of the system alone: a recorder stands for the session, and a second thread for the operator.
#pragma once

#include "dialog/win32/quick_view_win32.h"
#include "session/controls.h"

#include <windows.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace orvane::test {

/// Writes down what the window tells, and ends it where a session would.
class Recorder final : public WindowEvents {
public:
    void OnInitDialog() override {
        Add("init");
        if (onInit) onInit();
    }
    void OnShowWindow() override { Add("show"); }
    void OnCommand(int32 id) override {
        Add("command " + std::to_string(id));
        if (onCommand) onCommand(id);
    }
    bool OnSysCommand(int32 id) override {
        if (id == kTask) {
            task();
            return true;
        }
        Add("system " + std::to_string(id & ~0xF));
        return (id & ~0xF) == ORV_ABOUT_COMMAND;
    }
    void OnEditChanged(int32 id) override { Add("edit " + std::to_string(id)); }
    void OnToleranceReleased() override { Add("released " + std::to_string(window->SliderPosition())); }
    void OnMouseMove(int32 x, int32 y) override {
        Add("move " + std::to_string(x) + " " + std::to_string(y));
        if (onMouseMove) onMouseMove();
    }
    void OnLButtonDown(int32 x, int32 y) override { Add("down " + std::to_string(x) + " " + std::to_string(y)); }
    void OnLButtonUp(int32 x, int32 y) override { Add("up " + std::to_string(x) + " " + std::to_string(y)); }
    void OnCancel() override {
        Add("cancel");
        window->EndDialog();
    }
    void OnMessage(WindowMessage message) override {
        Add("message " + std::to_string(static_cast<int32>(message)));
        if (onMessage) onMessage(message);
    }

    /// What was told since the last call, but for the opening.
    std::vector<std::string> Take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(events_, {});
    }

    static constexpr int32 kTask = 0x7770; // a command of the system menu that stands for "do this"

    QuickViewWindow* window = nullptr;
    std::function<void()> onInit, onMouseMove, task;
    std::function<void(int32)> onCommand;
    std::function<void(WindowMessage)> onMessage;

private:
    void Add(std::string event) {
        const std::lock_guard lock(mutex_);
        events_.push_back(std::move(event));
    }

    std::mutex mutex_;
    std::vector<std::string> events_;
};

/// One window from its opening to its end.
class OpenWindow {
public:
    explicit OpenWindow(HWND owner = nullptr) : window_(recorder, owner) { recorder.window = &window_; }

    /// Opens the window on this thread and runs `operate` on another one; when that is through and the
    /// window still stands, it is closed. The result of DoModal.
    bool Run(const std::function<void()>& operate) {
        const DWORD thread = GetCurrentThreadId();
        SetCursorPos(0, 0); // the real mouse has no part in this
        const std::function<void()> more = recorder.onInit;
        std::atomic<bool> opened = false;
        recorder.onInit = [&] {
            EnumThreadWindows(
                thread,
                [](HWND window, LPARAM self) CALLBACK -> BOOL {
                    const HWND preview = GetDlgItem(window, kPreview);
                    if (preview != nullptr) reinterpret_cast<OpenWindow*>(self)->dialog = window;
                    return preview == nullptr;
                },
                reinterpret_cast<LPARAM>(this));
            if (more) more();
            opened = true;
        };
        std::thread operatorThread([&] {
            while (!opened && !over_) Sleep(1);
            if (over_) return;
            while (!IsWindowVisible(dialog) && !over_) Sleep(1);
            Settle();
            if (operate) operate();
            PostMessageW(dialog, WM_CLOSE, 0, 0);
        });
        const bool result = window_.DoModal();
        over_ = true;
        operatorThread.join();
        return result;
    }

    /// Runs something on the window's thread, among its events.
    void Do(const std::function<void(QuickViewWindow&)>& what) {
        recorder.task = [&] { what(window_); };
        SendMessageW(dialog, WM_SYSCOMMAND, Recorder::kTask, 0);
    }

    /// Waits until all that was posted is served.
    void Settle() {
        for (int i = 0; i < 3; ++i) {
            std::atomic<bool> served = false;
            const std::function<void()> before = recorder.task;
            recorder.task = [&] { served = true; };
            PostMessageW(dialog, WM_SYSCOMMAND, Recorder::kTask, 0);
            while (!served && !over_ && IsWindow(dialog)) Sleep(1);
            recorder.task = before;
        }
    }

    HWND Item(int32 id) const { return GetDlgItem(dialog, id); }

    std::wstring Text(int32 id) const {
        std::wstring text(256, L'\0');
        text.resize(static_cast<std::size_t>(GetWindowTextW(Item(id), text.data(), 256)));
        return text;
    }

    /// The control that has the keyboard.
    HWND Focus() const {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
        return info.hwndFocus;
    }

    void Key(WPARAM key) {
        const HWND target = Focus() == nullptr ? dialog : Focus();
        PostMessageW(target, WM_KEYDOWN, key, 1);
        PostMessageW(target, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001U));
        Settle();
    }

    Recorder recorder;
    HWND dialog = nullptr;

private:
    QuickViewWin32 window_;
    std::atomic<bool> over_ = false;
};

} // namespace orvane::test
