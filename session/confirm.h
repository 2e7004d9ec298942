// The half second in which the operator sees that the face is understood.
#pragma once

#include "image/bitmap.h"
#include "session/window.h"

namespace orvane {

/// The confirmation's thumbnail and the limit that it keeps.
struct CFaceConfirmDlg {
    int32 m_maxWidth = 150;
    int32 m_maxHeight = 150;
    int32 m_thumbWidth = 0; // set by MakeConfirmThumbnail
    int32 m_thumbHeight = 0;
    Bitmap m_thumbnail;
};

/// A bitmap scaled into the dialog's limit, with a box over the middle of the face and "OK" in it; the
/// dialog takes the new size. Empty where nothing is left of the bitmap.
Bitmap MakeConfirmThumbnail(CFaceConfirmDlg& dialog, const Bitmap& bitmap, WindowSystem& windows);

} // namespace orvane
