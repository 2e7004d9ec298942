// Mouse positions count from the preview's first pixel; the slider tells its release alone.
#include "tests/window/qt/window_fixture.h"

#include <QStyleOptionSlider>
#include <QWheelEvent>

#include <algorithm>

namespace orvane::test {
namespace {

class Mouse : public WindowTest {
protected:
    /// A place over the preview's picture, in the dialog's coordinates.
    static QPoint OnPreview(int x, int y) {
        return Control(kPreview)->pos() + QPoint(PictureFrame::kFrame + x, PictureFrame::kFrame + y);
    }
};

TEST_F(Mouse, ThePreviewsFirstPixelIsAtElevenTwelve) {
    Run([&] {
        EXPECT_EQ(Dialog()->childAt(OnPreview(5, 5)), nullptr) << "the preview leaves the mouse to the window";
        QTest::mouseMove(Dialog(), OnPreview(9, 9));
        QTest::qWait(50);
        recorder.Take();
        QTest::mousePress(Dialog(), Qt::LeftButton, {}, OnPreview(0, 0));
        QTest::mouseRelease(Dialog(), Qt::LeftButton, {}, OnPreview(100, 57));
        EXPECT_EQ(recorder.Take(), (Events{"down 11,12", "up 111,69"}));
    });
}

TEST_F(Mouse, MovesAreToldWithoutAButton) {
    Run([&] {
        QMouseEvent move(QEvent::MouseMove, QPointF(OnPreview(30, 40)),
                         Dialog()->mapToGlobal(QPointF(OnPreview(30, 40))), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        EXPECT_TRUE(Dialog()->hasMouseTracking());
        QApplication::sendEvent(Dialog(), &move);
        EXPECT_EQ(recorder.Take(), Events{"move 41,52"});
    });
}

TEST_F(Mouse, LabelsAndGroupsAreTheWindows) {
    Run([&] {
        for (const int32 id : {kPrompt, kToleranceGroup, kToleranceLabel, kRotationGroup, kTurnBackGroup}) {
            window->ShowControl(id, true);
            const QWidget* control = Control(id);
            EXPECT_TRUE(control->testAttribute(Qt::WA_TransparentForMouseEvents)) << id;
            EXPECT_EQ(Dialog()->childAt(control->geometry().topLeft() + QPoint(3, 3)), nullptr) << id;
        }
    });
}

TEST_F(Mouse, PressesOnButtonsAndEditsAreNotTheWindows) {
    Run([&] {
        window->ShowControl(kToleranceEdit, true);
        QTest::mouseClick(Control(kToleranceEdit), Qt::LeftButton);
        window->EnableControl(kPlainOk, false);
        QTest::mouseClick(Control(kPlainOk), Qt::LeftButton);
        EXPECT_EQ(recorder.Take(), Events{}) << "a disabled button is still no part of the picture";
    });
}

TEST_F(Mouse, OtherButtonsAndDoubleClicksAreNotTold) {
    Run([&] {
        QTest::mouseClick(Dialog(), Qt::RightButton, {}, OnPreview(5, 5));
        QTest::mouseClick(Dialog(), Qt::MiddleButton, {}, OnPreview(5, 5));
        QMouseEvent twice(QEvent::MouseButtonDblClick, QPointF(OnPreview(5, 5)), QPointF(), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(Dialog(), &twice);
        EXPECT_EQ(recorder.Take(), Events{});
    });
}

TEST_F(Mouse, TheCursorIsTheWindowsOwnAndWaitingEndsWithTheEvent) {
    Run([&] {
        window->SetCursor(Cursor::cross);
        EXPECT_EQ(Dialog()->cursor().shape(), Qt::CrossCursor);
        EXPECT_EQ(Control(kPlainOk)->cursor().shape(), Qt::ArrowCursor);
        window->SetCursor(Cursor::wait);
        window->SetCursor(Cursor::wait);
        ASSERT_NE(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QCoreApplication::processEvents();
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(Dialog()->cursor().shape(), Qt::CrossCursor);
        window->SetCursor(Cursor::arrow);
        EXPECT_EQ(Dialog()->cursor().shape(), Qt::ArrowCursor);
        window->SetCursor(Cursor::wait);
    });
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the end takes it back as well";
}

class Slider : public WindowTest {
protected:
    void RunSlider(const std::function<void(QSlider&)>& body) {
        Run([&] {
            window->ShowControl(kToleranceSlider, true);
            window->SetSliderRange(0, 99);
            window->SetSliderPosition(40);
            ASSERT_NE(Control<QSlider>(kToleranceSlider), nullptr);
            EXPECT_EQ(recorder.Take(), Events{}) << "the session's own position is no release";
            body(*Control<QSlider>(kToleranceSlider));
        });
    }
};

TEST_F(Slider, TellsWhenTheThumbIsLetGoAndNeverWhileItMoves) {
    RunSlider([&](QSlider& slider) {
        // The thumb's middle lies at the value's share of what the thumb leaves of the width.
        QStyleOptionSlider option;
        option.initFrom(&slider);
        option.minimum = 0;
        option.maximum = 99;
        option.sliderPosition = option.sliderValue = 40;
        option.subControls = QStyle::SC_All;
        const QRect thumb =
            slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider);
        QTest::mousePress(&slider, Qt::LeftButton, {}, thumb.center());
        for (int step = 1; step <= 20; ++step) {
            const QPointF place = thumb.center() + QPoint(step, 0);
            QMouseEvent move(QEvent::MouseMove, place, slider.mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(&slider, &move);
        }
        EXPECT_GT(window->SliderPosition(), 45);
        EXPECT_EQ(recorder.Take(), Events{});
        QTest::mouseRelease(&slider, Qt::LeftButton, {}, thumb.center() + QPoint(20, 0));
        EXPECT_EQ(recorder.Take(), Events{"released"});
    });
}

TEST_F(Slider, TellsAfterAPressBesideTheThumb) {
    RunSlider([&](QSlider& slider) {
        QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(slider.width() - 3, slider.height() / 2));
        EXPECT_EQ(recorder.Take(), Events{});
        QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(slider.width() - 3, slider.height() / 2));
        EXPECT_EQ(recorder.Take(), Events{"released"});
        EXPECT_GT(window->SliderPosition(), 40);
    });
}

TEST_F(Slider, TellsAfterEachStepByKeyOrWheelThatMovedIt) {
    RunSlider([&](QSlider& slider) {
        QTest::keyClick(&slider, Qt::Key_Right);
        EXPECT_EQ(window->SliderPosition(), 41);
        EXPECT_EQ(recorder.Take(), Events{"released"});
        QTest::keyClick(&slider, Qt::Key_End);
        EXPECT_EQ(window->SliderPosition(), 99);
        EXPECT_EQ(recorder.Take(), Events{"released"});
        QTest::keyClick(&slider, Qt::Key_Right);
        EXPECT_EQ(recorder.Take(), Events{}) << "it could not move";
        const QPointF middle = slider.rect().center();
        QWheelEvent wheel(middle, slider.mapToGlobal(middle), {}, QPoint(0, -120), Qt::NoButton, {}, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&slider, &wheel);
        EXPECT_LT(window->SliderPosition(), 99);
        EXPECT_EQ(recorder.Take(), Events{"released"});
    });
}

} // namespace
} // namespace orvane::test
