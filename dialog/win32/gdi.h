// Owners of the system's drawing objects, so that none outlives its use.
#pragma once

#include "session/window.h"

#include <windows.h>

#include <memory>

namespace orvane {

struct GdiObjectDeleter {
    void operator()(void* object) const { DeleteObject(object); }
};
struct DcDeleter {
    void operator()(HDC dc) const { DeleteDC(dc); }
};
struct IconDeleter {
    void operator()(HICON icon) const { DestroyIcon(icon); }
};

using OwnedBitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, GdiObjectDeleter>;
using OwnedFont = std::unique_ptr<std::remove_pointer_t<HFONT>, GdiObjectDeleter>;
using OwnedDc = std::unique_ptr<std::remove_pointer_t<HDC>, DcDeleter>;
using OwnedIcon = std::unique_ptr<std::remove_pointer_t<HICON>, IconDeleter>;

/// An object that is a device context's as long as this lives; it must live longer itself.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(SelectObject(dc, object)) {}
    ~Selected() { SelectObject(dc_, before_); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

private:
    HDC dc_;
    HGDIOBJ before_;
};

/// Bytes of a picture's row.
inline std::size_t RowBytes(int32 width) { return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4; }

/// A bitmap with a copy of a picture; null where there is no storage. `bits` receives the copy's pixels,
/// which have the same form.
OwnedBitmap CopyOf(PictureView picture, uint8** bits = nullptr);

} // namespace orvane
