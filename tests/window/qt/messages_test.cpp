// The window's messages to itself: one delivery each, in order, with input between them.
#include "dialog/qt/message_queue.h"
#include "tests/window/qt/window_fixture.h"

#include <QElapsedTimer>

#include <algorithm>
#include <atomic>
#include <thread>

namespace orvane::test {
namespace {

using Messages = WindowTest;

TEST_F(Messages, EachPostIsOneDeliveryInOrder) {
    recorder.onInit = [&] { window->Post(WindowMessage::animateMark); };
    Run([&] {
        QTest::qWait(30);
        recorder.Take();
        window->Post(WindowMessage::animateMark);
        window->Post(WindowMessage::previewBitmap);
        window->Post(WindowMessage::animateMark);
        EXPECT_EQ(recorder.Take(), Events{}) << "nothing comes before Post returns";
        EXPECT_TRUE(WaitForEvents(3));
        EXPECT_EQ(recorder.Take(), (Events{"message 30", "message 20", "message 30"}));
    });
}

TEST_F(Messages, ThatPostTheNextLeaveRoomForInput) {
    Run([&] {
        int sent = 0;
        recorder.onMessage = [&] {
            if (++sent < 10) window->Post(WindowMessage::animateMark);
        };
        window->Post(WindowMessage::animateMark);
        QTimer::singleShot(0, Dialog(), [&] { QTest::keyClick(Dialog(), Qt::Key_Escape); });
        EXPECT_TRUE(WaitForEvents(11));
        const Events events = recorder.Take();
        const auto key = std::find(events.begin(), events.end(), "cancel");
        ASSERT_NE(key, events.end());
        EXPECT_LT(key - events.begin(), 3) << "the key came between the messages";
    });
}

TEST_F(Messages, ComeFromOtherThreadsAndAreAllDelivered) {
    constexpr int kThreads = 4, kEach = 500;
    Run([&] {
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([&] {
                for (int n = 0; n < kEach; ++n) window->Post(WindowMessage::previewBitmap);
            });
        }
        EXPECT_TRUE(WaitForEvents(kThreads * kEach));
        for (std::thread& thread : threads) thread.join();
        QTest::qWait(20);
        EXPECT_EQ(recorder.events.size(), std::size_t{kThreads * kEach});
    });
}

TEST_F(Messages, OnTheirWayWhenTheWindowEndsAndGoesDoNoHarm) {
    std::atomic<bool> stop = false;
    std::thread poster;
    Run([&] {
        poster = std::thread([&] {
            while (!stop) window->Post(WindowMessage::previewBitmap);
        });
        QTest::qWait(20);
    });
    recorder.Take();
    QTest::qWait(20);
    EXPECT_EQ(recorder.Take(), Events{}) << "nothing is told after the end";
    stop = true;
    poster.join();
    window->Post(WindowMessage::previewBitmap);
    window.reset();
    QCoreApplication::processEvents();
}

TEST_F(Messages, WaitWhileTheConfirmationIsShown) {
    SeamPicture thumbnail(80, 100);
    Run([&] {
        window->Post(WindowMessage::previewBitmap);
        QElapsedTimer clock;
        clock.start();
        QTimer::singleShot(100, Dialog(), [&] {
            QWidget* confirm = QApplication::activeModalWidget();
            ASSERT_NE(confirm, nullptr);
            EXPECT_NE(confirm, Dialog());
            EXPECT_TRUE(confirm->windowFlags() & Qt::WindowStaysOnTopHint);
            auto* picture = dynamic_cast<PictureFrame*>(confirm->findChild<QWidget*>("1029"));
            ASSERT_NE(picture, nullptr);
            EXPECT_EQ(picture->Picture().size(), QSize(80, 100));
            EXPECT_TRUE(confirm->rect().contains(picture->geometry()));
            QTest::mouseClick(Dialog()->windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
            QTest::keyClick(Dialog()->windowHandle(), Qt::Key_Return);
            QTest::keyClick(Dialog(), Qt::Key_Escape);
            Dialog()->close();
        });
        QtWindowSystem().ShowFaceConfirm(thumbnail.View());
        EXPECT_GE(clock.elapsed(), 500);
        EXPECT_LT(clock.elapsed(), 3000);
        EXPECT_EQ(recorder.Take(), Events{}) << "neither messages nor input";
        EXPECT_TRUE(WaitForEvents(1));
        EXPECT_EQ(recorder.Take(), Events{"message 20"});
    });
    QtWindowSystem().ShowFaceConfirm({nullptr, 0, 0});
}

} // namespace
} // namespace orvane::test
