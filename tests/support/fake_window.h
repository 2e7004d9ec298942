// A window system that records what the session asks of it and replays what an operator does. It decides
// nothing: a control does what it was told, a message waits until it is asked for.
#pragma once

#include "session/controls.h"
#include "session/window.h"
#include "tests/support/shown_picture.h"

#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <new>
#include <sstream>
#include <string>
#include <vector>

namespace orvane::test {

/// A text that was written into a picture.
struct WrittenText {
    std::wstring text;
    int32 x, y, fontHeight, fontWidth;
    ColourRef colour;
    ImageSize picture;
};

struct FakeControl {
    std::string kind; // as the list of controls says
    std::wstring text;
    bool shown = false;
    bool enabled = true;

    bool IsEdit() const { return kind.rfind("DIGITS", 0) == 0; }
};

class FakeWindow;

/// What the test sets and what it finds afterwards. Every call of the session is a line of `log`.
class FakeWindowSystem final : public WindowSystem {
public:
    // Set by the test.
    bool canOpen = true;                                            // what CanOpenWindow says
    bool opens = true;                                              // what becomes of DoModal
    bool makes = true;                                              // whether CreateQuickView gives a window
    bool hasSlider = true;                                          // whether control 1005 exists
    std::vector<int32> skins;                                       // buttons whose skin file is a good one
    std::function<void(FakeWindow&)> beforeInit, script, afterward; // within DoModal; after the end
    std::function<void()> duringConfirm;                            // while the confirmation stands
    std::function<void()> duringAbout;
    std::string exhaustedAt; // a call whose line begins so finds memory exhausted, once
    bool logs = true;

    // Found by the test.
    std::vector<std::string> log;
    std::vector<ShownPicture> confirmations;
    std::vector<std::string> messages;
    std::vector<WrittenText> texts;
    std::vector<void*> owners;  // of each window
    FakeWindow* open = nullptr; // the window that is served at present
    int32 windowsAlive = 0;     // made and not deleted
    int32 callsOutside = 0;     // calls of a window that was not open, Post apart

    bool CanOpenWindow() override { return canOpen; }
    QuickViewWindow* CreateQuickView(WindowEvents& events, void* owner) override;
    void ShowFaceConfirm(PictureView thumbnail) override {
        Log("confirm");
        confirmations.emplace_back(thumbnail);
        if (duringConfirm) duringConfirm();
    }
    void ShowMessage(const char* text) override { messages.emplace_back(text); }
    bool IsWindowHandle(void* handle) override { return handle != nullptr; }
    void WriteText(uint8* /*bits*/, int32 width, int32 height, const TextMark& mark) override {
        const std::lock_guard lock(textMutex_);
        texts.push_back({mark.text, mark.x, mark.y, mark.fontHeight, mark.fontWidth, mark.colour, {width, height}});
    }

    template <typename... Parts>
    void Log(const Parts&... parts) {
        if (!logs) return;
        std::ostringstream line;
        ((line << parts), ...);
        log.push_back(line.str());
        if (!exhaustedAt.empty() && log.back().rfind(exhaustedAt, 0) == 0) {
            exhaustedAt.clear();
            throw std::bad_alloc();
        }
    }
    /// How many lines of the log are this one.
    int32 Count(const std::string& line) const {
        int32 count = 0;
        for (const std::string& logged : log) count += logged == line ? 1 : 0;
        return count;
    }

private:
    std::mutex textMutex_; // texts may be written from any thread
};

/// One window. The script that DoModal runs plays the operator through the functions of the upper half.
class FakeWindow final : public QuickViewWindow {
public:
    FakeWindow(FakeWindowSystem& system, WindowEvents& session) : events(session), system_(system) {
#define ORV_CONTROL(kind, id, text, x, y, width, height, start)                                                        \
    controls_[id] = {#kind, text, std::string(#start) == "SHOWN", true};
        ORV_QUICK_VIEW_CONTROLS(ORV_CONTROL)
#undef ORV_CONTROL
        if (!system.hasSlider) controls_.erase(kToleranceSlider);
        ++system.windowsAlive;
    }
    ~FakeWindow() override { --system_.windowsAlive; }
    FakeWindow(const FakeWindow&) = delete;
    FakeWindow& operator=(const FakeWindow&) = delete;

    WindowEvents& events; // for events that no operator could bring about

    // What the operator does. A click on a button that is hidden or disabled goes nowhere.

    bool Click(int32 id) {
        if (!CanServe() || !CanUse(id)) return false;
        events.OnCommand(id);
        return true;
    }
    /// Positions are the preview's.
    void Press(int32 x, int32 y) { events.OnLButtonDown(x + kPreviewLeft, y + kPreviewTop); }
    void Move(int32 x, int32 y) { events.OnMouseMove(x + kPreviewLeft, y + kPreviewTop); }
    void Release(int32 x, int32 y) { events.OnLButtonUp(x + kPreviewLeft, y + kPreviewTop); }
    bool Type(int32 id, const wchar_t* text) {
        if (!CanServe() || !CanUse(id)) return false;
        controls_[id].text = text;
        events.OnEditChanged(id);
        return true;
    }
    void MoveThumb(int32 position) { slider_ = position; }
    void DragSlider(int32 position) {
        MoveThumb(position);
        events.OnToleranceReleased();
    }
    void Enter() { Click(defaultButton_); }
    void Escape() { events.OnCancel(); }
    void CloseBox() { events.OnCancel(); }
    void DestroyFromOutside() { destroyed_ = true; }

    /// Delivers the messages that wait, and those that they bring about. How many there were.
    int32 Pump() {
        int32 count = 0;
        while (PumpOne()) ++count;
        return count;
    }
    bool PumpOne() {
        WindowMessage message;
        {
            const std::lock_guard lock(mutex_);
            if (messages_.empty() || !CanServe()) return false;
            message = messages_.front();
            messages_.pop_front();
        }
        events.OnMessage(message);
        return true;
    }

    // What the operator sees.

    bool IsShown(int32 id) const { return At(id).shown; }
    bool IsEnabled(int32 id) const { return At(id).enabled; }
    bool CanUse(int32 id) const { return At(id).shown && At(id).enabled; }
    std::wstring Text(int32 id) const { return At(id).text; }
    int32 Slider() const { return slider_; }
    int32 SliderLeast() const { return least_; }
    int32 SliderGreatest() const { return greatest_; }
    Cursor Pointer() const { return cursor_; }
    bool HasEnded() const { return ended_; }
    const ShownPicture& Preview() const { return preview_; }
    std::size_t Waiting() const { return messages_.size(); }
    const std::map<int32, FakeControl>& Controls() const { return controls_; }

    // What the session asks.

    bool DoModal() override {
        if (!system_.opens) return false;
        open_ = true;
        system_.open = this;
        if (system_.beforeInit) system_.beforeInit(*this);
        events.OnInitDialog();
        if (!ended_) events.OnShowWindow();
        if (!ended_ && system_.script) system_.script(*this);
        if (!destroyed_) events.OnShowWindow(); // it leaves the screen
        open_ = false;
        system_.open = nullptr;
        if (system_.afterward) system_.afterward(*this);
        return true;
    }
    void EndDialog() override {
        Call("end");
        ended_ = true;
    }
    bool HasControl(int32 id) override { return Call("has ", id), controls_.count(id) != 0; }
    void ShowControl(int32 id, bool shown) override {
        Call(shown ? "show " : "hide ", id);
        if (FakeControl* control = Find(id)) control->shown = shown;
    }
    void EnableControl(int32 id, bool enabled) override {
        Call(enabled ? "enable " : "disable ", id);
        if (FakeControl* control = Find(id)) control->enabled = enabled;
    }
    void FocusControl(int32 id) override { Call("focus ", id); }
    void SetDefaultButton(int32 id) override {
        Call("default ", id);
        defaultButton_ = id;
    }
    void MoveControl(int32 id, int32 place) override { Call("move ", id, " to ", place); }
    void UpdateControl(int32 id) override { Call("update ", id); }
    void SetTitle(const wchar_t* title) override { Call("title ", Narrow(title)); }
    void SetText(int32 id, const wchar_t* text) override {
        Call("text ", id, " ", Narrow(text));
        FakeControl* control = Find(id);
        if (control == nullptr) return;
        control->text = text;
        if (control->IsEdit()) events.OnEditChanged(id);
    }
    int32 GetText(int32 id, wchar_t* text, int32 capacity) override {
        Call("read ", id, " ", capacity);
        const std::wstring whole = Find(id) == nullptr ? L"" : Find(id)->text;
        const std::wstring part = whole.substr(0, static_cast<std::size_t>(capacity) - 1);
        part.copy(text, part.size());
        text[part.size()] = 0;
        return static_cast<int32>(part.size());
    }
    void SetSliderRange(int32 least, int32 greatest) override {
        Call("range ", least, " ", greatest);
        least_ = least;
        greatest_ = greatest;
    }
    void SetSliderPosition(int32 position) override {
        Call("slider ", position);
        slider_ = position;
    }
    int32 SliderPosition() override { return slider_; }
    void SetPreview(PictureView picture) override {
        Call("preview ", picture.width, " ", picture.height);
        preview_ = ShownPicture(picture);
    }
    void RepaintPreview() override { Call("repaint"); }
    bool LoadSkin(int32 id, const std::filesystem::path::value_type* file, ColourRef transparent) override {
        const std::filesystem::path path(file);
        Call("skin ", id, " ", path.filename().string(), " ", transparent);
        skinFolder = path.parent_path();
        for (const int32 good : system_.skins) {
            if (good == id) return true;
        }
        return false;
    }
    void ResetSkin(int32 id) override { Call("reset skin ", id); }
    void SetCursor(Cursor cursor) override {
        Call(cursor == Cursor::wait ? "cursor wait" : cursor == Cursor::cross ? "cursor cross" : "cursor arrow");
        cursor_ = cursor;
    }
    void ShowAbout() override {
        Call("about");
        if (system_.duringAbout) system_.duringAbout();
    }
    void Rest(int32 milliseconds) override { Call("rest ", milliseconds); }
    void Post(WindowMessage message) override {
        const std::lock_guard lock(mutex_);
        messages_.push_back(message);
    }

    std::filesystem::path skinFolder; // of the skin that was asked for last

private:
    template <typename... Parts>
    void Call(const Parts&... parts) {
        if (!open_) ++system_.callsOutside;
        system_.Log(parts...);
    }
    bool CanServe() const { return open_ && !ended_ && !destroyed_; }
    FakeControl* Find(int32 id) {
        const auto found = controls_.find(id);
        return found == controls_.end() ? nullptr : &found->second;
    }
    FakeControl At(int32 id) const {
        const auto found = controls_.find(id);
        return found == controls_.end() ? FakeControl{} : found->second;
    }
    static std::string Narrow(const wchar_t* text) {
        std::string narrow;
        for (; *text != 0; ++text) narrow.push_back(*text < 128 ? static_cast<char>(*text) : '?');
        return narrow;
    }

    FakeWindowSystem& system_;
    std::map<int32, FakeControl> controls_;
    int32 slider_ = 0, least_ = 0, greatest_ = 100;
    int32 defaultButton_ = kPlainOk;
    Cursor cursor_ = Cursor::arrow;
    ShownPicture preview_;
    std::mutex mutex_; // guards messages_
    std::deque<WindowMessage> messages_;
    bool open_ = false, ended_ = false, destroyed_ = false;
};

inline QuickViewWindow* FakeWindowSystem::CreateQuickView(WindowEvents& events, void* owner) {
    Log("create");
    owners.push_back(owner);
    return makes ? new FakeWindow(*this, events) : nullptr;
}

} // namespace orvane::test
