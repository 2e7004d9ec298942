#include "dialog/win32/gdi.h"

#include <cstring>

namespace orvane {

OwnedBitmap CopyOf(PictureView picture, uint8** bits) {
    if (picture.bits == nullptr || picture.width < 1 || picture.height < 1) return nullptr;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.width;
    info.bmiHeader.biHeight = picture.height; // positive: the bottom row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* copy = nullptr;
    OwnedBitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &copy, nullptr, 0));
    if (bitmap == nullptr) return nullptr;
    std::memcpy(copy, picture.bits, RowBytes(picture.width) * static_cast<std::size_t>(picture.height));
    if (bits != nullptr) *bits = static_cast<uint8*>(copy);
    return bitmap;
}

} // namespace orvane
