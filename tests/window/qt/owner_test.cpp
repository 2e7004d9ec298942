// The host's window that owns ours, and ends that come from outside.
#include "dialog/qt/owner.h"
#include "tests/window/qt/window_fixture.h"

#include <QWindow>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>

namespace orvane::test {
namespace {

using Owner = WindowTest;

void* HandleOf(QWidget& widget) { return reinterpret_cast<void*>(widget.winId()); }

TEST_F(Owner, AWindowOfThisProcessOwnsTheDialog) {
    QWidget host;
    host.show();
    EXPECT_TRUE(QtWindowSystem().IsWindowHandle(HandleOf(host)));
    Run([&] { EXPECT_EQ(Dialog()->windowHandle()->transientParent(), host.windowHandle()); }, HandleOf(host));
    EXPECT_TRUE(host.isVisible());
}

TEST_F(Owner, APartOfAWindowStandsForTheWindow) {
    QWidget host;
    QWidget part(&host);
    part.setAttribute(Qt::WA_NativeWindow);
    host.show();
    Run([&] { EXPECT_EQ(Dialog()->windowHandle()->transientParent(), host.windowHandle()); }, HandleOf(part));
}

TEST_F(Owner, WhatNamesNoWindowIsNone) {
    EXPECT_FALSE(QtWindowSystem().IsWindowHandle(nullptr));
    int local = 0;
    EXPECT_FALSE(QtWindowSystem().IsWindowHandle(&local));
    void* gone = nullptr;
    {
        QWidget host;
        host.show();
        gone = HandleOf(host);
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(QtWindowSystem().IsWindowHandle(gone));
    Run([&] { EXPECT_EQ(Dialog()->windowHandle()->transientParent(), nullptr); }, gone);
}

/// A window of another client of the X server, as one of another toolkit is.
class ForeignWindow {
public:
    ForeignWindow() : connection_(xcb_connect(nullptr, nullptr)), id_(xcb_generate_id(connection_)) {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, id_, screen->root, 10, 10, 50, 50, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        Settle();
    }
    ~ForeignWindow() { xcb_disconnect(connection_); }
    ForeignWindow(const ForeignWindow&) = delete;
    ForeignWindow& operator=(const ForeignWindow&) = delete;

    void* Handle() const { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(id_)); }
    void Destroy() {
        xcb_destroy_window(connection_, id_);
        Settle();
    }

private:
    void Settle() { std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr)); }

    xcb_connection_t* connection_;
    xcb_window_t id_;
};

TEST_F(Owner, AnyWindowOfTheXServerCanBeOneAndEndsTheDialogWhenItGoes) {
    if (QGuiApplication::platformName() != "xcb") GTEST_SKIP() << "there is no X server";
    ForeignWindow foreign;
    EXPECT_TRUE(QtWindowSystem().IsWindowHandle(foreign.Handle()));
    Run(
        [&] {
            const QWindow* owner = Dialog()->windowHandle()->transientParent();
            ASSERT_NE(owner, nullptr);
            EXPECT_EQ(reinterpret_cast<void*>(owner->winId()), foreign.Handle());
        },
        foreign.Handle());
    EXPECT_TRUE(QtWindowSystem().IsWindowHandle(foreign.Handle())) << "the dialog's end leaves it alone";
    window.reset(QtWindowSystem().CreateQuickView(recorder, foreign.Handle()));
    QTimer::singleShot(50, qApp, [&] { foreign.Destroy(); });
    EXPECT_TRUE(window->DoModal());
    EXPECT_FALSE(QtWindowSystem().IsWindowHandle(foreign.Handle()));
}

TEST_F(Owner, ThatIsDestroyedEndsTheWindow) {
    auto host = std::make_unique<QWidget>();
    host->show();
    window.reset(QtWindowSystem().CreateQuickView(recorder, HandleOf(*host)));
    QTimer::singleShot(50, host.get(), [&] { host.reset(); });
    EXPECT_TRUE(window->DoModal());
    EXPECT_EQ(host, nullptr);
    EXPECT_EQ(recorder.Take(), (Events{"init", "show"})) << "the session learns it by DoModal's return";
    EXPECT_EQ(Dialog(), nullptr);
}

TEST_F(Owner, TheDialogDestroyedByOthersEndsTheWindow) {
    window.reset(QtWindowSystem().CreateQuickView(recorder, nullptr));
    QTimer::singleShot(50, qApp, [] { delete WindowTest::Dialog(); });
    EXPECT_TRUE(window->DoModal());
    EXPECT_FALSE(window->HasControl(kPlainOk));
}

TEST_F(Owner, TheApplicationsEndEndsTheWindowAndLaterOnesOpenAgain) {
    // As a host does that works inside its own loop. Its end closes all windows first, and the session cancels.
    recorder.onCancel = [&] { window->EndDialog(); };
    for (const bool asked : {true, false}) {
        QTimer::singleShot(0, qApp, [&] {
            window.reset(QtWindowSystem().CreateQuickView(recorder, nullptr));
            QTimer::singleShot(50, qApp, [=] { asked ? QCoreApplication::quit() : QCoreApplication::exit(3); });
            EXPECT_TRUE(window->DoModal());
        });
        QTimer guard;
        QObject::connect(&guard, &QTimer::timeout, [] { QCoreApplication::exit(77); });
        guard.start(5000);
        EXPECT_EQ(QApplication::exec(), asked ? 0 : 3);
        EXPECT_EQ(recorder.Take(), asked ? (Events{"init", "show", "cancel"}) : (Events{"init", "show"}));
    }
    // And of one that was told to exit without a loop of its own.
    window.reset(QtWindowSystem().CreateQuickView(recorder, nullptr));
    QTimer::singleShot(50, qApp, [] { QCoreApplication::exit(3); });
    EXPECT_TRUE(window->DoModal());
    EXPECT_EQ(recorder.Take(), (Events{"init", "show"}));
    bool reached = false;
    recorder.onCommand = [&](int32) {
        reached = true;
        window->EndDialog();
    };
    window.reset(QtWindowSystem().CreateQuickView(recorder, nullptr));
    QTimer::singleShot(50, qApp, [] { WindowTest::Control<QPushButton>(kPlainOk)->click(); });
    EXPECT_TRUE(window->DoModal());
    EXPECT_TRUE(reached);
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(0); });
    QApplication::exec(); // the end that was asked for is over
}

TEST_F(Owner, TheHostsRuleAboutItsLastWindowStays) {
    const bool before = QApplication::quitOnLastWindowClosed();
    Run([&] {});
    EXPECT_EQ(QApplication::quitOnLastWindowClosed(), before);
}

} // namespace
} // namespace orvane::test
