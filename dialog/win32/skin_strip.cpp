#include "dialog/win32/skin_strip.h"

#include "dialog/win32/gdi.h"

namespace orvane {
namespace {

/// A picture off the screen with a device context of its own. Empty where either can't be had.
class OffScreen {
public:
    OffScreen(HDC like, HBITMAP bitmap) : bitmap_(bitmap), dc_(CreateCompatibleDC(like)) {
        if (bitmap_ != nullptr && dc_ != nullptr) before_ = SelectObject(dc_.get(), bitmap_.get());
    }
    ~OffScreen() {
        if (before_ != nullptr) SelectObject(dc_.get(), before_);
    }
    OffScreen(const OffScreen&) = delete;
    OffScreen& operator=(const OffScreen&) = delete;

    explicit operator bool() const { return before_ != nullptr; }
    HDC Dc() const { return dc_.get(); }

private:
    OwnedBitmap bitmap_;
    OwnedDc dc_;
    HGDIOBJ before_ = nullptr;
};

} // namespace

bool CKbcBmp::Load(const wchar_t* path) {
    const bool loaded = m_image.Load(path);
    m_width = m_image.m_pixelWidth;
    m_height = m_image.m_pixelHeight;
    m_faceWidth = m_width / 4;
    return loaded && m_faceWidth > 0;
}

void CKbcBmp::DrawFace(HDC dc, int32 index, int32 x, int32 y, COLORREF transparent) {
    const int32 w = m_faceWidth, h = m_height;
    if (w < 1 || h < 1 || index < 0 || index > 3) return;
    const OffScreen strip(dc, CreateCompatibleBitmap(dc, m_width, h));
    const OffScreen face(dc, CreateCompatibleBitmap(dc, w, h));
    const OffScreen mask(dc, CreateBitmap(w, h, 1, 1, nullptr));
    const OffScreen behind(dc, CreateCompatibleBitmap(dc, w, h));
    if (!strip || !face || !mask || !behind || !m_image.Render(strip.Dc(), {0, 0, m_width, h})) return;
    BitBlt(face.Dc(), 0, 0, w, h, strip.Dc(), w * index, 0, SRCCOPY);
    // From colour to monochrome the background colour becomes white, any other one black.
    SetBkColor(face.Dc(), transparent);
    BitBlt(mask.Dc(), 0, 0, w, h, face.Dc(), 0, 0, SRCCOPY);
    // Back to colour white becomes the background colour: transparent pixels of the face turn black.
    SetBkColor(face.Dc(), RGB(0, 0, 0));
    SetTextColor(face.Dc(), RGB(255, 255, 255));
    BitBlt(face.Dc(), 0, 0, w, h, mask.Dc(), 0, 0, SRCAND);
    BitBlt(behind.Dc(), 0, 0, w, h, dc, x, y, SRCCOPY);
    BitBlt(behind.Dc(), 0, 0, w, h, mask.Dc(), 0, 0, SRCAND); // black where the face will stand
    BitBlt(behind.Dc(), 0, 0, w, h, face.Dc(), 0, 0, SRCPAINT);
    BitBlt(dc, x, y, w, h, behind.Dc(), 0, 0, SRCCOPY);
}

} // namespace orvane
