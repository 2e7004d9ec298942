// The preview shows each picture as it is, and text stands on a picture where it belongs.
#include "dialog/window_system.h"
#include "tests/window/win32/open_window.h"
#include "tests/window/win32/screen_pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>
#include <vector>

namespace orvane::test {
namespace {

/// How many pixels of a window differ from a picture that it should show; -1 where the sizes do.
int Differences(HWND window, const TestPicture& picture) {
    const Pixels shown = PixelsOf(window);
    if (shown.width != picture.width || shown.height != picture.height) return -1;
    int count = 0;
    for (int y = 0; y < shown.height; ++y) {
        for (int x = 0; x < shown.width; ++x) count += shown.At(x, y) != picture.At(x, y) ? 1 : 0;
    }
    return count;
}

TEST(Win32Preview, ShowsThePicturesUnscaledAtItsUpperLeftCorner) {
    OpenWindow open;
    open.Run([&] {
        for (const auto& [w, h] : {std::pair{400, 400}, {300, 400}, {399, 121}, {400, 400}, {1, 1}}) {
            SCOPED_TRACE(w);
            const TestPicture picture(w, h, static_cast<uint8>(h));
            int different = -2;
            open.Do([&](QuickViewWindow& window) {
                window.SetPreview(picture.View());
                different = Differences(open.Item(kPreview), picture); // painted at once
            });
            EXPECT_EQ(different, 0);
            POINT first{0, 0};
            ClientToScreen(open.Item(kPreview), &first);
            ScreenToClient(open.dialog, &first);
            EXPECT_EQ(first.x, kPreviewLeft);
            EXPECT_EQ(first.y, kPreviewTop);
        }
    });
}

TEST(Win32Preview, TheLargestPictureEndsLeftOfTheButtonsAndAboveThePrompt) {
    OpenWindow open;
    open.Run([&] {
        const TestPicture picture(400, 400);
        open.Do([&](QuickViewWindow& window) { window.SetPreview(picture.View()); });
        RECT preview, place;
        GetWindowRect(open.Item(kPreview), &preview);
        for (const int32 id : {kPlainClear, kPlainOk, kToleranceGroup, kRotationGroup}) {
            GetWindowRect(open.Item(id), &place);
            EXPECT_LT(preview.right, place.left) << id;
        }
        GetWindowRect(open.Item(kPrompt), &place);
        EXPECT_LT(preview.bottom, place.top);
    });
}

TEST(Win32Preview, KeepsAPictureOfItsOwnAndTheOneBeforeWhereTheNextIsNone) {
    OpenWindow open;
    open.Run([&] {
        TestPicture picture(120, 80);
        const TestPicture same(120, 80);
        int different = -2;
        open.Do([&](QuickViewWindow& window) {
            window.SetPreview(picture.View());
            std::fill(picture.bits.begin(), picture.bits.end(), uint8{0});
            window.SetPreview({nullptr, 10, 10});
            window.SetPreview({picture.bits.data(), 0, 10});
            window.SetPreview({picture.bits.data(), 10, -1});
            window.RepaintPreview();
            different = Differences(open.Item(kPreview), same);
        });
        EXPECT_EQ(different, 0);
    });
}

TEST(Win32Preview, RepaintsWhatAnotherWindowCovered) {
    OpenWindow open;
    open.Run([&] {
        const TestPicture picture(120, 80);
        int different = -2;
        open.Do([&](QuickViewWindow& window) {
            window.SetPreview(picture.View());
            const HDC dc = GetDC(open.Item(kPreview));
            PatBlt(dc, 0, 0, 120, 80, BLACKNESS);
            ReleaseDC(open.Item(kPreview), dc);
            EXPECT_NE(Differences(open.Item(kPreview), picture), 0);
            window.RepaintPreview();
            different = Differences(open.Item(kPreview), picture);
        });
        EXPECT_EQ(different, 0);
    });
}

TEST(Win32Preview, ShowsNothingElseBetweenTwoPictures) {
    OpenWindow open;
    open.Run([&] {
        const TestPicture picture(400, 300);
        open.Do([&](QuickViewWindow& window) { window.SetPreview(picture.View()); });
        RECT place; // with its frame
        GetWindowRect(open.Item(kPreview), &place);
        MapWindowPoints(nullptr, open.dialog, reinterpret_cast<POINT*>(&place), 2);
        // A look at all pixels would take too long for what stands only shortly: these lie on the frame, at the
        // picture's edges and in its middle.
        std::vector<std::pair<POINT, COLORREF>> points;
        const Pixels shown = PixelsOf(open.dialog);
        for (const int x : {place.left, place.left + 2, place.left + 200, place.right - 3, place.right - 1}) {
            for (const int y : {place.top, place.top + 2, place.top + 150, place.bottom - 3, place.bottom - 1}) {
                points.push_back({{x, y}, shown.At(x, y)});
            }
        }
        std::atomic<bool> ended = false;
        int looks = 0, others = 0;
        std::thread eye([&] {
            // In the dialog a drawing stands at once; on the screen later, and not each of them.
            const HDC dc = GetDC(open.dialog);
            for (; !ended; ++looks) {
                for (const auto& [point, colour] : points) others += GetPixel(dc, point.x, point.y) != colour ? 1 : 0;
            }
            ReleaseDC(open.dialog, dc);
        });
        open.Do([&](QuickViewWindow& window) {
            for (int i = 0; i < 200; ++i) window.SetPreview(picture.View());
        });
        ended = true;
        eye.join();
        EXPECT_GT(looks, 10);
        EXPECT_EQ(others, 0) << "in " << looks << " looks";
    });
}

TEST(Win32Preview, TheNextPictureOfTheSameSizeLeavesTheFrameAsItIs) {
    OpenWindow open;
    open.Run([&] {
        const TestPicture picture(400, 300);
        int left = 0;
        open.Do([&](QuickViewWindow& window) {
            window.SetPreview(picture.View());
            const HWND preview = open.Item(kPreview);
            const HDC dc = GetWindowDC(preview);
            PatBlt(dc, 0, 0, 404, 2, BLACKNESS); // a frame drawn again would not be black
            PatBlt(dc, 402, 0, 2, 304, BLACKNESS);
            window.SetPreview(picture.View());
            const Pixels shown = PixelsOf(dc, 404, 304);
            ReleaseDC(preview, dc);
            for (int x = 0; x < 404; ++x) left += shown.At(x, 0) == 0 && shown.At(x, 1) == 0 ? 1 : 0;
            for (int y = 2; y < 304; ++y) left += shown.At(402, y) == 0 && shown.At(403, y) == 0 ? 1 : 0;
        });
        EXPECT_EQ(left, 404 + 302);
    });
}

TEST(Win32Preview, ASmallerPictureLeavesNothingOfTheLargerOne) {
    OpenWindow open;
    open.Run([&] {
        const TestPicture large(400, 300), small(100, 50);
        COLORREF ground = 0, left = 0;
        open.Do([&](QuickViewWindow& window) {
            const auto pixel = [&](int x, int y) {
                return PixelsOf(open.dialog).At(kPreviewLeft + x, kPreviewTop + y);
            };
            window.SetPreview(small.View());
            ground = pixel(300, 200);
            window.SetPreview(large.View());
            EXPECT_NE(pixel(300, 200), ground);
            window.SetPreview(small.View());
            left = pixel(300, 200);
        });
        EXPECT_EQ(left, ground);
    });
}

struct Extent {
    int left = 1 << 20, top = 1 << 20, right = -1, bottom = -1;
};

/// The part of a black picture that a text was written on, from the top; its colour wherever it is whole.
Extent Written(const TestPicture& picture) {
    Extent extent;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.At(x, y) == 0) continue;
            extent = {std::min(extent.left, x), std::min(extent.top, y), std::max(extent.right, x),
                      std::max(extent.bottom, y)};
        }
    }
    return extent;
}

TestPicture Black(int32 width, int32 height) {
    TestPicture picture(width, height);
    std::fill(picture.bits.begin(), picture.bits.end(), uint8{0});
    return picture;
}

TEST(Win32Text, StandsAtItsPlaceInItsSizeAndColour) {
    TestPicture picture = Black(301, 400);
    ThisWindowSystem().WriteText(picture.bits.data(), 301, 400, {L"?", 120, 100, 200, 60, 0xFF3232});
    const Extent extent = Written(picture);
    EXPECT_GE(extent.left, 110);
    EXPECT_LE(extent.right, 210);
    EXPECT_GE(extent.top, 100);
    EXPECT_LE(extent.bottom, 300);
    EXPECT_GT(extent.bottom - extent.top, 100);
    EXPECT_NE(std::count(picture.bits.begin(), picture.bits.end(), uint8{0xFF}), 0);
    int whole = 0;
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 301; ++x) whole += picture.At(x, y) == 0xFF3232 ? 1 : 0;
    }
    EXPECT_GT(whole, 500);
    for (int y = 0; y < 400; ++y) { // 301 pixels leave one byte of padding
        EXPECT_EQ(picture.bits[RowBytes(301) * static_cast<std::size_t>(y) + 903], 0);
    }
}

TEST(Win32Text, LeavesTheRestOfThePictureAndItsPadding) {
    TestPicture picture(90, 60);
    const TestPicture before = picture;
    ThisWindowSystem().WriteText(picture.bits.data(), 90, 60, {L"OK", 200, 10, 20, 8, 0xFFFFFF}); // beside it
    EXPECT_EQ(picture.bits, before.bits);
    ThisWindowSystem().WriteText(picture.bits.data(), 90, 60, {L"OK", 10, 10, 0, 8, 0xFFFFFF});
    ThisWindowSystem().WriteText(picture.bits.data(), 90, 60, {nullptr, 10, 10, 20, 8, 0xFFFFFF});
    ThisWindowSystem().WriteText(nullptr, 90, 60, {L"OK", 10, 10, 20, 8, 0xFFFFFF});
    ThisWindowSystem().WriteText(picture.bits.data(), 0, 60, {L"OK", 10, 10, 20, 8, 0xFFFFFF});
    EXPECT_EQ(picture.bits, before.bits);
    ThisWindowSystem().WriteText(picture.bits.data(), 90, 60, {L"OK", 10, 10, 20, 8, 0xFFFFFF});
    EXPECT_NE(picture.bits, before.bits);
}

TEST(Win32Text, IsTheSameFromAnyThread) {
    TestPicture expected = Black(200, 150);
    const auto write = [](TestPicture& picture) {
        ThisWindowSystem().WriteText(picture.bits.data(), 200, 150, {L"OK", 52, 40, 45, 30, 0x00FF00});
    };
    write(expected);
    std::vector<TestPicture> pictures(8, Black(200, 150));
    std::vector<std::thread> threads;
    for (TestPicture& picture : pictures) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20; ++i) {
                std::fill(picture.bits.begin(), picture.bits.end(), uint8{0});
                write(picture);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const TestPicture& picture : pictures) EXPECT_EQ(picture.bits, expected.bits);
}

} // namespace
} // namespace orvane::test
