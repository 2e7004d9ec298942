// Pictures arrive pixel by pixel; texts are written in the place that is asked for.
#include "dialog/qt/picture.h"
#include "tests/window/qt/window_fixture.h"

#include <thread>

namespace orvane::test {
namespace {

using Preview = WindowTest;

TEST_F(Preview, ShowsItsPicturePixelByPixelBehindAFrameOfTwo) {
    for (const auto& [w, h] : {std::pair(400, 300), std::pair(399, 400), std::pair(1, 1), std::pair(6, 5)}) {
        SeamPicture picture(w, h);
        Run([&, w = w, h = h] {
            window->SetPreview(picture.View());
            PictureFrame* preview = Dialog()->Preview();
            ASSERT_EQ(preview->size(), QSize(w + 4, h + 4));
            const QImage shot = preview->grab().toImage();
            int wrong = 0;
            for (int y = 0; y < h; ++y) {
                for (int x = 0; x < w; ++x) wrong += (shot.pixel(x + 2, y + 2) | 0xFF000000U) != picture.Colour(x, y);
            }
            EXPECT_EQ(wrong, 0) << w << " by " << h;
        });
    }
}

TEST_F(Preview, PaintsAtOnceAndAgainWhenAsked) {
    class Watch : public QObject {
    public:
        int paints = 0;

    protected:
        bool eventFilter(QObject*, QEvent* event) override {
            paints += event->type() == QEvent::Paint;
            return false;
        }
    };
    SeamPicture picture(40, 30);
    Run([&] {
        Watch watch;
        Dialog()->Preview()->installEventFilter(&watch);
        window->SetPreview(picture.View());
        EXPECT_GE(watch.paints, 1) << "without a turn of the event loop";
        watch.paints = 0;
        window->RepaintPreview();
        EXPECT_EQ(watch.paints, 1);
        window->SetPreview({nullptr, 10, 10});
        window->SetPreview({picture.rows.data(), 0, 10});
        window->SetPreview({picture.rows.data(), 10, -1});
        EXPECT_EQ(Dialog()->Preview()->Picture().size(), QSize(40, 30)) << "no picture leaves the one before";
    });
}

TEST_F(Preview, TheCallersPixelsAreCopied) {
    SeamPicture picture(20, 20);
    Run([&] {
        const QRgb before = picture.Colour(7, 9);
        window->SetPreview(picture.View());
        std::fill(picture.rows.begin(), picture.rows.end(), uint8{0});
        EXPECT_EQ(Dialog()->Preview()->Picture().pixel(7, 9), before);
    });
}

/// The box of the pixels that a text changed, and how many there are.
QRect Written(SeamPicture& before, SeamPicture& after, int& count) {
    QRect box;
    count = 0;
    for (int y = 0; y < before.height; ++y) {
        for (int x = 0; x < before.width; ++x) {
            if (before.Colour(x, y) == after.Colour(x, y)) continue;
            box |= QRect(x, y, 1, 1);
            ++count;
        }
    }
    return box;
}

TEST(WriteText, LiesInItsCellAndHasItsColour) {
    SeamPicture blank(303, 200);
    std::fill(blank.rows.begin(), blank.rows.end(), uint8{255});
    SeamPicture written = blank;
    QtWindowSystem().WriteText(written.rows.data(), 303, 200, {L"?", 120, 50, 100, 60, 0xFF3232});
    int count = 0;
    const QRect box = Written(blank, written, count);
    EXPECT_GT(count, 300);
    EXPECT_TRUE(QRect(120, 50, 100, 100).contains(box)) << box.x() << " " << box.y() << " " << box.width();
    EXPECT_GT(box.height(), 55) << "a capital is some seven tenths of the cell high";
    EXPECT_GT(box.width(), 25);
    int full = 0;
    for (int y = box.top(); y <= box.bottom(); ++y) {
        for (int x = box.left(); x <= box.right(); ++x) full += written.Colour(x, y) == qRgb(0x32, 0x32, 0xFF);
    }
    EXPECT_GT(full, count / 2) << "red and green 0x32, blue 0xFF";
    for (int y = 0; y < 200; ++y) { // 303 pixels are 909 bytes and 3 of padding
        for (int i = 909; i < 912; ++i) EXPECT_EQ(written.rows[static_cast<std::size_t>(y * 912 + i)], 255);
    }
}

TEST(WriteText, WhatLiesOutsideIsLeftOutAndNonsenseChangesNothing) {
    SeamPicture picture(40, 30);
    const std::vector<uint8> before = picture.rows;
    for (const TextMark& mark :
         {TextMark{L"OK", 4000, 10, 20, 10, 0}, TextMark{L"OK", -500, -500, 20, 10, 0}, TextMark{L"OK", 0, 0, 0, 10, 0},
          TextMark{L"OK", 0, 0, 10, -3, 0}, TextMark{nullptr, 0, 0, 10, 3, 0}, TextMark{L"", 0, 0, 10, 3, 0}}) {
        QtWindowSystem().WriteText(picture.rows.data(), 40, 30, mark);
        EXPECT_EQ(picture.rows, before);
    }
    QtWindowSystem().WriteText(picture.rows.data(), 40, 30, {L"OK", -5, -5, 60, 30, 0});
    EXPECT_NE(picture.rows, before);
    QtWindowSystem().WriteText(nullptr, 40, 30, {L"OK", 0, 0, 20, 10, 0});
}

TEST(WriteText, IsTheSameFromSeveralThreadsAtOnce) {
    const TextMark mark{L"OK", 20, 10, 80, 40, 0x00FF00};
    SeamPicture expected(200, 120);
    QtWindowSystem().WriteText(expected.rows.data(), 200, 120, mark);
    std::vector<SeamPicture> pictures(3, SeamPicture(200, 120));
    std::vector<std::thread> threads;
    for (SeamPicture& picture : pictures) {
        threads.emplace_back([&picture, &mark] {
            for (int i = 0; i < 5; ++i) {
                picture = SeamPicture(200, 120);
                QtWindowSystem().WriteText(picture.rows.data(), 200, 120, mark);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const SeamPicture& picture : pictures) EXPECT_EQ(picture.rows, expected.rows);
}

} // namespace
} // namespace orvane::test
