// Pixels of a window as it was painted.
#pragma once

#include "dialog/win32/gdi.h"

#include <windows.h>

#include <vector>

namespace orvane::test {

/// A picture with the top row first and no padding.
struct Pixels {
    int width = 0, height = 0;
    std::vector<COLORREF> values;

    COLORREF At(int x, int y) const {
        return values[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
};

/// What a device context shows from its origin on.
inline Pixels PixelsOf(HDC dc, int width, int height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const OwnedBitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const OwnedDc copy(CreateCompatibleDC(nullptr));
    Pixels result{width, height, {}};
    {
        const Selected inUse(copy.get(), bitmap.get());
        BitBlt(copy.get(), 0, 0, width, height, dc, 0, 0, SRCCOPY);
        GdiFlush();
    }
    const auto* pixel = static_cast<const uint32*>(bits);
    for (int i = 0; i < width * height; ++i) {
        result.values.push_back(RGB(pixel[i] >> 16 & 0xFF, pixel[i] >> 8 & 0xFF, pixel[i] & 0xFF));
    }
    return result;
}

/// What a window's client area shows.
inline Pixels PixelsOf(HWND window) {
    RECT client;
    GetClientRect(window, &client);
    const HDC dc = GetDC(window);
    Pixels result = PixelsOf(dc, client.right, client.bottom);
    ReleaseDC(window, dc);
    return result;
}

/// A picture of the form that the session hands over, each pixel another colour.
struct TestPicture {
    TestPicture(int32 w, int32 h, uint8 seed = 0)
        : width(w), height(h), bits(RowBytes(w) * static_cast<std::size_t>(h), 0xEE) {
        for (int32 y = 0; y < h; ++y) {
            for (int32 x = 0; x < w; ++x) {
                uint8* pixel =
                    bits.data() + RowBytes(w) * static_cast<std::size_t>(y) + 3 * static_cast<std::size_t>(x);
                pixel[0] = static_cast<uint8>(x + seed);
                pixel[1] = static_cast<uint8>(y * 3);
                pixel[2] = static_cast<uint8>((x ^ y) + seed);
            }
        }
    }
    PictureView View() const { return {bits.data(), width, height}; }

    /// The colour at a position that counts from the top.
    COLORREF At(int x, int y) const {
        const uint8* pixel =
            bits.data() + RowBytes(width) * static_cast<std::size_t>(height - 1 - y) + 3 * static_cast<std::size_t>(x);
        return RGB(pixel[2], pixel[1], pixel[0]);
    }

    int32 width, height;
    std::vector<uint8> bits;
};

} // namespace orvane::test
