#include "session/confirm.h"

#include "image/packed_dib.h"
#include "primitives/trunc.h"
#include "session/session_state.h"

namespace orvane {

Bitmap MakeConfirmThumbnail(CFaceConfirmDlg& dialog, const Bitmap& bitmap, WindowSystem& windows) {
    constexpr ColourRef kGreen = 0x00FF00;
    const ImageSize size = FitInside(bitmap.Size(), {dialog.m_maxWidth, dialog.m_maxHeight});
    Bitmap thumbnail = Stretched(bitmap, size);
    const int32 w = dialog.m_thumbWidth = size.width;
    const int32 h = dialog.m_thumbHeight = size.height;
    if (thumbnail.IsEmpty()) return thumbnail;
    const Corners box{TruncToInt32(w * 0.25), TruncToInt32(h * 0.25), TruncToInt32(w * 0.75), TruncToInt32(h * 0.75)};
    DrawRectangle(thumbnail, box, kGreen);
    windows.WriteText(
        thumbnail.Bits(), w, h,
        {L"OK", box.left + 2, TruncToInt32(box.top + h * 0.1), TruncToInt32(h * 0.3), TruncToInt32(w * 0.15), kGreen});
    return thumbnail;
}

void COrvQuickViewDlg::ShowConfirmation() {
    {
        const ActionFlagsGuard flags; // whole again before a window comes that may serve other events
        g_actionEnabled.fill(0);
        g_actionEnabled[kSlotCrop] = 1;
        RunActionPipeline(0, 0);
        StoreWorkIntoBitmap(m_resultBitmap);
    }
    if (!m_windows.CanOpenWindow()) return;
    CFaceConfirmDlg dialog;
    dialog.m_thumbnail = MakeConfirmThumbnail(dialog, m_resultBitmap, m_windows);
    if (!dialog.m_thumbnail.IsEmpty()) m_windows.ShowFaceConfirm(ViewOf(dialog.m_thumbnail));
}

} // namespace orvane
