// Skinned buttons: the four faces, the transparent colour, and files that are no skin.
#include "dialog/win32/skin_strip.h"
#include "tests/support/temp_folder.h"
#include "tests/window/win32/open_window.h"
#include "tests/window/win32/screen_pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>

namespace orvane::test {
namespace {

constexpr COLORREF kTransparent = 0xFFFFFF;
constexpr std::array<COLORREF, 4> kFaces{RGB(40, 120, 200), RGB(60, 180, 60), RGB(200, 60, 60), RGB(128, 128, 128)};

/// The bytes of a bitmap file with four faces of their own colours; a frame of two pixels around each is
/// transparent. What a width leaves over is black.
std::vector<char> StripFile(int32 width, int32 height) {
    const std::size_t row = RowBytes(width);
    BITMAPFILEHEADER head{};
    BITMAPINFOHEADER info{};
    head.bfType = 0x4D42;
    head.bfOffBits = sizeof head + sizeof info;
    head.bfSize = head.bfOffBits + static_cast<DWORD>(row * static_cast<std::size_t>(height));
    info.biSize = sizeof info;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 24;
    std::vector<char> file(head.bfSize);
    std::memcpy(file.data(), &head, sizeof head);
    std::memcpy(file.data() + sizeof head, &info, sizeof info);
    const int32 faceWidth = width / 4;
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; faceWidth > 0 && x < faceWidth * 4; ++x) {
            const int32 inFace = x % faceWidth;
            const bool frame = inFace < 2 || inFace >= faceWidth - 2 || y < 2 || y >= height - 2;
            const COLORREF colour = frame ? kTransparent : kFaces[static_cast<std::size_t>(x / faceWidth)];
            char* pixel =
                file.data() + head.bfOffBits + row * static_cast<std::size_t>(y) + 3 * static_cast<std::size_t>(x);
            pixel[0] = static_cast<char>(GetBValue(colour));
            pixel[1] = static_cast<char>(GetGValue(colour));
            pixel[2] = static_cast<char>(GetRValue(colour));
        }
    }
    return file;
}

class Win32Skin : public ::testing::Test {
protected:
    std::wstring Write(const std::vector<char>& bytes, const wchar_t* name = L"skin.bmp") {
        const std::filesystem::path path = folder_.Path() / name;
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return path.wstring();
    }
    bool Loads(const std::wstring& path) {
        CKbcBmp strip;
        return strip.Load(path.c_str());
    }

    TempFolder folder_;
};

TEST_F(Win32Skin, AStripHasFourFacesOfEqualWidth) {
    CKbcBmp strip;
    ASSERT_TRUE(strip.Load(Write(StripFile(81, 20)).c_str()));
    EXPECT_EQ(strip.m_width, 81);
    EXPECT_EQ(strip.m_height, 20);
    EXPECT_EQ(strip.m_faceWidth, 20);
    EXPECT_EQ(strip.m_image.m_fileSize, static_cast<int32>(StripFile(81, 20).size()));
}

TEST_F(Win32Skin, AFaceIsDrawnAtItsPlaceWithoutItsTransparentPixels) {
    CKbcBmp strip;
    ASSERT_TRUE(strip.Load(Write(StripFile(81, 20)).c_str()));
    const HDC screen = GetDC(nullptr);
    const OwnedBitmap bitmap(CreateCompatibleBitmap(screen, 40, 40));
    const OwnedDc dc(CreateCompatibleDC(screen));
    ReleaseDC(nullptr, screen);
    const Selected inUse(dc.get(), bitmap.get());
    constexpr COLORREF kBehind = RGB(10, 200, 90);
    for (int32 face = 0; face < 4; ++face) {
        SCOPED_TRACE(face);
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 40; ++x) SetPixel(dc.get(), x, y, kBehind);
        }
        strip.DrawFace(dc.get(), face, 7, 11, kTransparent);
        const Pixels pixels = PixelsOf(dc.get(), 40, 40);
        int wrong = 0;
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 40; ++x) {
                const bool inside = x >= 7 + 2 && x < 7 + 18 && y >= 11 + 2 && y < 11 + 18;
                wrong += pixels.At(x, y) != (inside ? kFaces[static_cast<std::size_t>(face)] : kBehind) ? 1 : 0;
            }
        }
        EXPECT_EQ(wrong, 0);
    }
    strip.DrawFace(dc.get(), 4, 0, 0, kTransparent); // no such face
    strip.DrawFace(dc.get(), -1, 0, 0, kTransparent);
}

TEST_F(Win32Skin, FilesThatAreNoStripAreRefused) {
    const std::vector<char> good = StripFile(80, 20);
    EXPECT_TRUE(Loads(Write(good)));
    EXPECT_FALSE(Loads((folder_.Path() / "missing.bmp").wstring()));
    EXPECT_FALSE(Loads(folder_.Path().wstring()));
    EXPECT_FALSE(Loads(Write({})));
    EXPECT_FALSE(Loads(Write({'B'})));
    EXPECT_FALSE(Loads(Write(std::vector<char>(500, 'x'))));
    EXPECT_FALSE(Loads(Write(StripFile(3, 20))));
    for (std::size_t length = 1; length < good.size(); length += length < 60 ? 1 : 97) {
        EXPECT_FALSE(Loads(Write({good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)}))) << length;
    }
    const auto lying = [&](std::size_t at, int32 value) {
        std::vector<char> file = good;
        std::memcpy(file.data() + at, &value, sizeof value);
        return Loads(Write(file));
    };
    constexpr std::size_t kWidthAt = 18, kHeightAt = 22, kPixelsAt = 10, kInfoAt = 14;
    for (const int32 value : {0, -1, 30'000, 32'768, INT32_MAX, INT32_MIN}) {
        EXPECT_FALSE(lying(kWidthAt, value)) << value;
        if (value != -1) { // that is one row, the top one
            EXPECT_FALSE(lying(kHeightAt, value)) << value;
        }
        EXPECT_FALSE(lying(kPixelsAt, value == 0 ? -2 : value)) << value;
        EXPECT_FALSE(lying(kInfoAt, value)) << value;
    }
}

TEST_F(Win32Skin, AFileOfMoreThan64MegabytesIsRefused) {
    const std::wstring path = Write(StripFile(80, 20));
    const auto size = [&](std::uintmax_t bytes) { std::filesystem::resize_file(path, bytes); };
    size(64ULL * 1024 * 1024 + 1);
    EXPECT_FALSE(Loads(path));
    size(100'000); // what stands behind the pixels does no harm
    EXPECT_TRUE(Loads(path));
}

TEST_F(Win32Skin, TheButtonTakesTheFacesSizeAtItsPlace) {
    const std::wstring path = Write(StripFile(4 * 70, 24));
    OpenWindow open;
    open.Run([&] {
        RECT before, after;
        GetWindowRect(open.Item(kSkinOk), &before);
        open.Do([&](QuickViewWindow& window) {
            EXPECT_TRUE(window.LoadSkin(kSkinOk, path.c_str(), kTransparent));
            EXPECT_FALSE(window.LoadSkin(kPlainOk, path.c_str(), kTransparent)); // not of this kind
        });
        GetWindowRect(open.Item(kSkinOk), &after);
        EXPECT_EQ(after.left, before.left);
        EXPECT_EQ(after.top, before.top);
        EXPECT_EQ(after.right - after.left, 70);
        EXPECT_EQ(after.bottom - after.top, 24);
    });
}

TEST_F(Win32Skin, AStripOfOnePixelsHeightMovesTheButtonAndIsRefused) {
    const std::wstring path = Write(StripFile(4 * 70, 1));
    OpenWindow open;
    open.Run([&] {
        open.Do([&](QuickViewWindow& window) {
            EXPECT_FALSE(window.LoadSkin(kSkinOk, path.c_str(), kTransparent));
            EXPECT_FALSE(window.LoadSkin(kSkinClear, L"c:\\no such file", kTransparent));
        });
        RECT after;
        GetWindowRect(open.Item(kSkinOk), &after);
        EXPECT_EQ(after.bottom - after.top, 1);
        GetWindowRect(open.Item(kSkinClear), &after);
        EXPECT_GT(after.bottom - after.top, 1);
    });
}

TEST_F(Win32Skin, TheFaceFollowsTheMouse) {
    const std::wstring path = Write(StripFile(4 * 70, 24));
    OpenWindow open;
    open.Run([&] {
        open.Do([&](QuickViewWindow& window) {
            ASSERT_TRUE(window.LoadSkin(kSkinOk, path.c_str(), kTransparent));
            window.ShowControl(kPlainOk, false);
            window.MoveControl(kSkinOk, kPlainOk);
            window.ShowControl(kSkinOk, true);
        });
        const HWND button = open.Item(kSkinOk);
        COLORREF behind = 0;
        open.Do([&](QuickViewWindow&) {
            const HDC dc = GetDC(open.dialog);
            behind = GetPixel(dc, 1, 1); // the dialog's own colour
            ReleaseDC(open.dialog, dc);
        });
        const auto face = [&] {
            COLORREF middle = 0, corner = 0;
            open.Do([&](QuickViewWindow&) {
                UpdateWindow(button);
                const Pixels pixels = PixelsOf(button);
                middle = pixels.At(35, 12);
                corner = pixels.At(0, 0);
            });
            EXPECT_EQ(corner, behind);
            return middle;
        };
        EXPECT_EQ(face(), kFaces[0]);
        SendMessageW(button, WM_MOUSEHOVER, 0, MAKELPARAM(35, 12));
        EXPECT_EQ(face(), kFaces[1]);
        SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(35, 12));
        EXPECT_EQ(face(), kFaces[2]);
        open.recorder.Take();
        SendMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(35, 12));
        const auto events = open.recorder.Take();
        EXPECT_EQ(std::count(events.begin(), events.end(), "command 1007"), 1);
        EXPECT_EQ(face(), kFaces[1]);
        SendMessageW(button, WM_MOUSELEAVE, 0, 0);
        EXPECT_EQ(face(), kFaces[0]);
        open.Do([](QuickViewWindow& window) { window.EnableControl(kSkinOk, false); });
        EXPECT_EQ(face(), kFaces[0]); // a button that the dialog disables keeps its face
        SendMessageW(button, WM_MOUSEHOVER, 0, 0);
        open.Do([](QuickViewWindow& window) { window.ResetSkin(kSkinOk); });
        InvalidateRect(button, nullptr, TRUE);
        EXPECT_EQ(face(), kFaces[0]);
    });
}

TEST_F(Win32Skin, TheMouseIsTrackedFromEnteringToLeaving) {
    const HWND parent = CreateWindowExW(WS_EX_TOPMOST, L"Static", L"", WS_POPUP | WS_VISIBLE, 300, 300, 200, 100,
                                        nullptr, nullptr, nullptr, nullptr);
    const HWND window = CreateWindowW(L"Button", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 10, 10, 50, 20, parent,
                                      nullptr, nullptr, nullptr);
    {
        CHoverBitmapButton button;
        button.Attach(window);
        const auto pumpUntil = [](const auto& condition) {
            const DWORD start = GetTickCount();
            MSG message;
            while (!condition() && GetTickCount() - start < 5000) {
                while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
                Sleep(1);
            }
            return condition();
        };
        SetCursorPos(0, 0);
        pumpUntil([] { return true; });
        for (int i = 0; i < 3; ++i) {
            SetCursorPos(330, 320);
            EXPECT_TRUE(pumpUntil([&] { return button.m_hover && button.m_tracking; }));
            SetCursorPos(0, 0);
            EXPECT_TRUE(pumpUntil([&] { return !button.m_hover && !button.m_tracking; }));
        }
    }
    DestroyWindow(parent);
}

TEST_F(Win32Skin, ADisabledOneShowsTheLastFaceAndSwallowsPresses) {
    const std::wstring path = Write(StripFile(4 * 70, 24));
    const HWND parent =
        CreateWindowW(L"Static", L"", WS_POPUP | WS_VISIBLE, 0, 0, 200, 100, nullptr, nullptr, nullptr, nullptr);
    const HWND window = CreateWindowW(L"Button", L"", WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, 10, 10, 50, 20, parent,
                                      nullptr, nullptr, nullptr);
    {
        CHoverBitmapButton button;
        button.Attach(window);
        ASSERT_TRUE(button.LoadSkin(path.c_str(), kTransparent));
        button.m_disabled = TRUE;
        SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        EXPECT_NE(GetCapture(), window);
        SendMessageW(window, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
        EXPECT_NE(GetCapture(), window);
        DRAWITEMSTRUCT record{};
        record.CtlType = ODT_BUTTON;
        record.hwndItem = window;
        record.itemState = ODS_SELECTED;
        record.rcItem = {0, 0, 70, 24};
        const HDC dc = GetDC(window);
        record.hDC = dc;
        button.DrawItem(record);
        ReleaseDC(window, dc);
        EXPECT_EQ(PixelsOf(window).At(35, 12), kFaces[3]);
        button.m_disabled = FALSE;
        SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        EXPECT_EQ(GetCapture(), window);
        ReleaseCapture();
    }
    DestroyWindow(parent);
}

} // namespace
} // namespace orvane::test
