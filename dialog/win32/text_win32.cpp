#include "dialog/win32/text_win32.h"

#include "dialog/win32/gdi.h"

#include <cstring>

namespace orvane {

void WriteTextWin32(uint8* bits, int32 width, int32 height, const TextMark& mark) {
    // A size of 0 would ask for the system's default.
    if (mark.text == nullptr || mark.fontHeight < 1 || mark.fontWidth < 1) return;
    uint8* drawn = nullptr;
    const OwnedBitmap copy = CopyOf({bits, width, height}, &drawn);
    const OwnedFont font(CreateFontW(mark.fontHeight, mark.fontWidth, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                     DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, PROOF_QUALITY, FF_SWISS,
                                     L"Arial"));
    const OwnedDc dc(CreateCompatibleDC(nullptr));
    if (copy == nullptr || font == nullptr || dc == nullptr) return;
    {
        const Selected bitmapInUse(dc.get(), copy.get());
        const Selected fontInUse(dc.get(), font.get());
        SetBkMode(dc.get(), TRANSPARENT);
        SetTextColor(dc.get(), mark.colour);
        TextOutW(dc.get(), mark.x, mark.y, mark.text, static_cast<int>(std::wcslen(mark.text)));
        GdiFlush(); // what was drawn may wait in the thread's batch
    }
    const auto pixels = static_cast<std::size_t>(width) * 3; // the padding is not ours
    for (int32 y = 0; y < height; ++y) {
        const std::size_t row = RowBytes(width) * static_cast<std::size_t>(y);
        std::memcpy(bits + row, drawn + row, pixels);
    }
}

} // namespace orvane
