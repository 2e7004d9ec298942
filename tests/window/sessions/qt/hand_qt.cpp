// The hand on Qt. Every step runs on the application's thread, inside the window's own loop, and comes in
// through the window system as a person's does.
#include "tests/window/sessions/hand.h"

#include <QApplication>
#include <QLineEdit>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <future>
#include <thread>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kLongest = 30s; // that a step may take

bool WaitFor(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + kLongest;
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) return true;
        std::this_thread::sleep_for(5ms);
    }
    return false;
}

QWidget* FindOurs(const std::wstring& title) {
    const auto wanted = QString::fromStdWString(title);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowTitle() == wanted) return widget;
    }
    return nullptr;
}

QWidget* Window() { return FindOurs(L"Orvane  -  Kelmont"); }

QWidget* Control(int32 id) {
    QWidget* window = Window();
    return window == nullptr ? nullptr : window->findChild<QWidget*>(QString::number(id));
}

/// Runs a step on the application's thread. False when it was not served in time, as when no loop runs.
bool Run(const std::function<void()>& step, bool wait = true) {
    if (QCoreApplication::instance() == nullptr) return false;
    struct State {
        std::function<void()> step;
        std::promise<void> done;
        std::atomic<bool> abandoned = false;
    };
    const auto state = std::make_shared<State>();
    state->step = step;
    auto done = state->done.get_future();
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [state] {
            if (!state->abandoned) state->step();
            state->done.set_value();
        },
        Qt::QueuedConnection);
    if (!wait) return true;
    if (done.wait_for(kLongest) == std::future_status::ready) return true;
    state->abandoned = true;
    return false;
}

/// An answer from the application's thread; false where none came.
bool Ask(const std::function<bool()>& question) {
    const auto answer = std::make_shared<std::atomic<bool>>(false);
    return Run([=] { *answer = question(); }) && *answer;
}

QPoint InWindow(QWidget* widget, QPoint point) { return widget->mapTo(widget->window(), point); }

class QtHand final : public Hand {
public:
    bool WaitForWindow() override {
        if (!WaitFor([] { return QCoreApplication::instance() != nullptr; })) return false;
        return WaitFor([this] { return IsOpen(); });
    }
    bool IsOpen() override {
        return Ask([] { return Window() != nullptr && Window()->windowHandle() != nullptr; });
    }
    bool IsShown(int32 id) override {
        return Ask([id] { return Control(id) != nullptr && Control(id)->isVisible(); });
    }
    bool IsEnabled(int32 id) override {
        return Ask([id] { return Control(id) != nullptr && Control(id)->isEnabled(); });
    }

    ShownPicture Preview() override {
        const auto shown = std::make_shared<ShownPicture>();
        Run([shown] {
            QWidget* preview = Control(kPreview);
            if (preview == nullptr) return;
            const QImage image =
                preview->grab(preview->contentsRect()).toImage().convertToFormat(QImage::Format_BGR888).mirrored();
            *shown = ShownPicture({image.constBits(), image.width(), image.height()});
        });
        return *shown;
    }
    std::wstring TextOf(int32 id) override {
        const auto text = std::make_shared<std::wstring>();
        Run([=] {
            if (QWidget* control = Control(id)) *text = control->property("text").toString().toStdWString();
        });
        return *text;
    }

    void Click(int32 id) override {
        Use(id, [](QWidget* control) { Mouse(control, control->rect().center(), &QTest::mouseClick); });
    }
    void StartClick(int32 id) override {
        Use(
            id, [](QWidget* control) { Mouse(control, control->rect().center(), &QTest::mouseClick); }, false);
    }
    void Press(int32 x, int32 y) override { OnPreview(x, y, &QTest::mousePress); }
    void Move(int32 x, int32 y) override {
        OnPreview(x, y, [](QWindow* window, Qt::MouseButton, Qt::KeyboardModifiers, QPoint point, int) {
            QTest::mouseMove(window, point);
        });
    }
    void Release(int32 x, int32 y) override { OnPreview(x, y, &QTest::mouseRelease); }
    void HoverOver(int32 id) override {
        Use(id, [](QWidget* control) {
            const QPoint point = InWindow(control, control->rect().center());
            QTest::mouseMove(control->window()->windowHandle(), point - QPoint(control->width(), 0));
            QTest::mouseMove(control->window()->windowHandle(), point);
        });
        std::this_thread::sleep_for(100ms);
    }
    void Hold(int32 id) override {
        Use(id, [](QWidget* control) { Mouse(control, control->rect().center(), &QTest::mousePress); });
    }
    void LetGo(int32 id) override {
        Use(id, [](QWidget* control) { Mouse(control, control->rect().center(), &QTest::mouseRelease); });
    }
    void Type(int32 id, const wchar_t* text) override {
        Use(id, [text](QWidget* control) {
            Mouse(control, control->rect().center(), &QTest::mouseClick);
            qobject_cast<QLineEdit*>(control)->selectAll();
            if (*text == 0) QTest::keyClick(control, Qt::Key_Backspace);
            QTest::keyClicks(control, QString::fromWCharArray(text));
        });
    }
    void DragSlider(int32 position) override {
        Use(kToleranceSlider, [position](QWidget* control) {
            auto* slider = qobject_cast<QSlider*>(control);
            QPoint point = Handle(slider).center();
            Mouse(slider, point, &QTest::mousePress);
            const int way = slider->sliderPosition() < position ? 1 : -1;
            while ((position - slider->sliderPosition()) * way > 0 && point.x() > 0 && point.x() < slider->width()) {
                point.rx() += way;
                QTest::mouseMove(slider->window()->windowHandle(), InWindow(slider, point));
            }
            // A pixel may be more than a step.
            EXPECT_LE(std::abs(slider->sliderPosition() - position), 2) << "the slider does not go there";
            slider->setSliderPosition(position);
            Mouse(slider, point, &QTest::mouseRelease);
        });
    }
    void Enter() override { PressKey(Qt::Key_Return); }
    void Escape() override { PressKey(Qt::Key_Escape); }
    void CloseBox() override {
        Step([](QWidget* window) { window->close(); });
    }
    void CloseOthers() override {
        WaitFor([] { return Ask([] { return FindOurs(ORV_ABOUT_TITLE) != nullptr; }); });
        Run([] {
            if (QWidget* about = FindOurs(ORV_ABOUT_TITLE)) about->close();
        });
    }
    void OnWindowsThread(const std::function<void()>& function) override {
        Step([=](QWidget*) { function(); });
    }
    bool TakePicture(const std::wstring& title, const std::string& file) override {
        if (!WaitFor([&] { return Ask([=] { return FindOurs(title) != nullptr; }); })) return false;
        std::this_thread::sleep_for(100ms); // what waits for the preview gets there
        return WaitFor([&] {
            return Ask([=] {
                QWidget* window = FindOurs(title);
                return window != nullptr && window->grab().save(QString::fromStdString(file));
            });
        });
    }

private:
    using MouseAction = void (*)(QWindow*, Qt::MouseButton, Qt::KeyboardModifiers, QPoint, int);

    static void Mouse(QWidget* widget, QPoint point, MouseAction action) {
        action(widget->window()->windowHandle(), Qt::LeftButton, {}, InWindow(widget, point), -1);
    }
    static QRect Handle(QSlider* slider) {
        QStyleOptionSlider option;
        option.initFrom(slider);
        option.orientation = slider->orientation();
        option.minimum = slider->minimum();
        option.maximum = slider->maximum();
        option.sliderPosition = slider->sliderPosition();
        option.sliderValue = slider->value();
        return slider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider);
    }
    static void Step(const std::function<void(QWidget*)>& step) {
        const auto found = std::make_shared<std::atomic<bool>>(false);
        const bool served = Run([=] {
            QWidget* window = Window();
            if (window == nullptr) return;
            *found = true;
            step(window);
        });
        EXPECT_TRUE(served && *found) << "no window for a step";
    }
    static void Use(int32 id, const std::function<void(QWidget*)>& step, bool wait = true) {
        const bool usable = WaitFor([id] {
            return Ask([id] {
                QWidget* control = Control(id);
                return control != nullptr && control->isVisible() && control->isEnabled() &&
                       FindOurs(ORV_CONFIRM_TITLE) == nullptr;
            });
        });
        EXPECT_TRUE(usable) << "control " << id << " can't be used";
        if (!usable) return;
        EXPECT_TRUE(Run(
            [=] {
                if (QWidget* control = Control(id)) step(control);
            },
            wait))
            << "control " << id << " did not answer";
    }
    static void OnPreview(int32 x, int32 y, MouseAction action) {
        Step([=](QWidget* window) {
            QWidget* preview = Control(kPreview);
            const QRect inside = preview->contentsRect(); // without the frame
            action(window->windowHandle(), Qt::LeftButton, {}, InWindow(preview, inside.topLeft() + QPoint(x, y)), -1);
        });
    }
    static void PressKey(Qt::Key key) {
        Step([key](QWidget* window) { QTest::keyClick(window->windowHandle(), key); });
    }
};

} // namespace

std::unique_ptr<Hand> MakeHand() { return std::make_unique<QtHand>(); }

} // namespace orvane::test
