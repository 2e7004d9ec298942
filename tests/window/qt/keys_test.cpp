// Keys and the close box arrive as what they stand for.
#include "tests/window/qt/window_fixture.h"

namespace orvane::test {
namespace {

using Keys = WindowTest;

void Press(Qt::Key key) { QTest::keyClick(WindowTest::Dialog()->focusWidget(), key); }

TEST_F(Keys, EnterClicksTheDefaultButton) {
    Run([&] {
        window->ShowControl(kToleranceEdit, true);
        for (const int32 focus : {kPlainOk, kToleranceEdit}) {
            window->FocusControl(focus);
            Press(Qt::Key_Return);
            Press(Qt::Key_Enter);
            EXPECT_EQ(recorder.Take(), (Events{"command 1015", "command 1015"})) << focus;
        }
    });
}

TEST_F(Keys, ThatCanBeTheSkinnedOne) {
    Run([&] {
        window->ShowControl(kPlainOk, false);
        window->ShowControl(kSkinOk, true);
        window->SetDefaultButton(kSkinOk);
        window->FocusControl(kSkinOk);
        Press(Qt::Key_Return);
        EXPECT_EQ(recorder.Take(), Events{"command 1007"});
        window->ShowControl(kSkinOk, false);
        Press(Qt::Key_Return);
        EXPECT_EQ(recorder.Take(), Events{}) << "a hidden default does nothing";
    });
}

TEST_F(Keys, ADisabledDefaultDoesNothingWhateverHadTheFocus) {
    recorder.onInit = [&] { // as a session does that finds no face
        window->FocusControl(kPlainOk);
        window->EnableControl(kPlainOk, false);
        window->EnableControl(kPlainClear, false);
    };
    Run([&] {
        Press(Qt::Key_Return);
        EXPECT_EQ(recorder.Take(), Events{}) << "the focus must not have gone to Cancel";
        window->EnableControl(kPlainOk, true);
        Press(Qt::Key_Return);
        EXPECT_EQ(recorder.Take(), Events{"command 1015"});
        window->FocusControl(kPlainOk);
        window->EnableControl(kPlainOk, false);
        Press(Qt::Key_Return);
        Press(Qt::Key_Space);
        EXPECT_EQ(recorder.Take(), Events{});
    });
}

TEST_F(Keys, EnterOnAnotherButtonWithTheFocusClicksThatOne) {
    Run([&] {
        window->FocusControl(kCancelButton);
        Press(Qt::Key_Return);
        EXPECT_EQ(recorder.Take(), Events{"command 1004"});
    });
}

TEST_F(Keys, OneThatIsHeldDownCountsOnce) {
    Run([&] {
        for (const int key : {Qt::Key_Return, Qt::Key_Escape}) {
            QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
            QApplication::sendEvent(Dialog(), &repeated);
        }
        EXPECT_EQ(recorder.Take(), Events{});
    });
}

TEST_F(Keys, EscAndTheCloseBoxCancel) {
    Run([&] {
        Press(Qt::Key_Escape);
        EXPECT_EQ(recorder.Take(), Events{"cancel"});
        window->ShowControl(kRotationEdit, true);
        window->FocusControl(kRotationEdit);
        Press(Qt::Key_Escape);
        EXPECT_EQ(recorder.Take(), Events{"cancel"});
        EXPECT_FALSE(Dialog()->close());
        EXPECT_EQ(recorder.Take(), Events{"cancel"});
        EXPECT_TRUE(Dialog()->isVisible()) << "the session ends the window, nobody else";
        EXPECT_FALSE(Dialog()->testAttribute(Qt::WA_QuitOnClose));
    });
}

TEST_F(Keys, NothingIsToldAfterTheEnd) {
    recorder.onCommand = [&](int32) { window->EndDialog(); };
    Run([&] {
        Control<QPushButton>(kPlainOk)->click();
        Press(Qt::Key_Escape);
        Control<QPushButton>(kPlainOk)->click();
        QTest::mouseClick(Dialog(), Qt::LeftButton, {}, QPoint(20, 20));
        EXPECT_EQ(recorder.Take(), Events{"command 1015"});
    });
}

TEST_F(Keys, TheAboutBoxIsModalAndEndsWithTheWindow) {
    Run([&] {
        QTimer::singleShot(50, Dialog(), [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return); });
        window->ShowAbout();
        EXPECT_EQ(recorder.Take(), Events{});
        QTimer::singleShot(50, Dialog(), [&] {
            EXPECT_EQ(QApplication::activeModalWidget()->windowTitle(), QString::fromWCharArray(ORV_ABOUT_TITLE));
            window->EndDialog();
        });
        window->ShowAbout();
    });
}

} // namespace
} // namespace orvane::test
