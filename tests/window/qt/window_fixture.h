// The operator's window without a session: what it tells is written down, and a body that a test gives looks at
// the open window and works it.
#pragma once

#include "dialog/qt/quick_view_dialog.h"
#include "dialog/qt/widgets.h"
#include "dialog/qt/window_system_qt.h"
#include "session/controls.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orvane::test {

class Recorder final : public WindowEvents {
public:
    void OnInitDialog() override {
        Note("init");
        if (onInit) onInit();
    }
    void OnShowWindow() override { Note("show"); }
    void OnCommand(int32 id) override {
        Note("command " + std::to_string(id));
        if (onCommand) onCommand(id);
    }
    bool OnSysCommand(int32) override { return false; }
    void OnEditChanged(int32 id) override { Note("edit " + std::to_string(id)); }
    void OnToleranceReleased() override { Note("released"); }
    void OnMouseMove(int32 x, int32 y) override { Note("move " + Place(x, y)); }
    void OnLButtonDown(int32 x, int32 y) override { Note("down " + Place(x, y)); }
    void OnLButtonUp(int32 x, int32 y) override { Note("up " + Place(x, y)); }
    void OnCancel() override {
        Note("cancel");
        if (onCancel) onCancel();
    }
    void OnMessage(WindowMessage message) override {
        Note("message " + std::to_string(static_cast<int32>(message)));
        if (onMessage) onMessage();
    }

    /// What came since the last call.
    std::vector<std::string> Take() { return std::exchange(events, {}); }

    std::vector<std::string> events;
    std::function<void()> onInit, onMessage, onCancel;
    std::function<void(int32)> onCommand;

private:
    static std::string Place(int32 x, int32 y) { return std::to_string(x) + "," + std::to_string(y); }
    void Note(std::string event) { events.push_back(std::move(event)); }
};

using Events = std::vector<std::string>;

class WindowTest : public ::testing::Test {
public:
    /// The open window; null when there is none.
    static QuickViewDialog* Dialog() {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (auto* dialog = dynamic_cast<QuickViewDialog*>(top)) return dialog;
        }
        return nullptr;
    }
    template <typename Widget = QWidget>
    static Widget* Control(int32 id) {
        return dynamic_cast<Widget*>(Dialog()->Control(id));
    }

protected:
    /// Opens the window; once it is on the screen `body` runs, and the window is ended behind it.
    void Run(const std::function<void()>& body, void* owner = nullptr) {
        window.reset(QtWindowSystem().CreateQuickView(recorder, owner));
        ASSERT_NE(window, nullptr);
        bool reached = false;
        QTimer::singleShot(0, &here_, [&] {
            Work(body, reached);
            window->EndDialog();
        });
        EXPECT_TRUE(window->DoModal());
        EXPECT_TRUE(reached);
    }

    /// Lets the event loop run until so many events have come; false when they don't.
    bool WaitForEvents(std::size_t count) {
        QTimer limit;
        limit.setSingleShot(true);
        limit.start(20000);
        while (recorder.events.size() < count && limit.isActive()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return recorder.events.size() == count;
    }
    std::wstring Text(int32 id) const {
        wchar_t text[64];
        window->GetText(id, text, 64);
        return text;
    }

    Recorder recorder;
    std::unique_ptr<QuickViewWindow> window;

private:
    void Work(const std::function<void()>& body, bool& reached) {
        ASSERT_NE(Dialog(), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(Dialog()));
        ASSERT_TRUE(QTest::qWaitForWindowActive(Dialog()));
        recorder.Take();
        body();
        reached = true;
    }

    QObject here_;
};

/// A picture of the seam.
struct SeamPicture {
    SeamPicture(int32 w, int32 h)
        : width(w), height(h), step((3 * w + 3) / 4 * 4), rows(static_cast<std::size_t>(step) * h) {
        for (int32 y = 0; y < h; ++y) {
            for (int32 x = 0; x < w; ++x) {
                uint8* pixel = Pixel(x, y);
                pixel[0] = static_cast<uint8>(x * 7 + y);
                pixel[1] = static_cast<uint8>(x + y * 11);
                pixel[2] = static_cast<uint8>(x * y);
            }
        }
    }
    /// Rows counted from the top.
    uint8* Pixel(int32 x, int32 y) {
        return rows.data() + static_cast<std::ptrdiff_t>(step) * (height - 1 - y) + 3 * x;
    }
    QRgb Colour(int32 x, int32 y) {
        const uint8* pixel = Pixel(x, y);
        return qRgb(pixel[2], pixel[1], pixel[0]);
    }
    PictureView View() const { return {rows.data(), width, height}; }

    int32 width, height, step;
    std::vector<uint8> rows;
};

} // namespace orvane::test
