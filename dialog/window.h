// The seam between the session and the operator's window. Each backend defines these functions once;
// the one in none/ opens nothing.
#pragma once

#include "image/bitmap.h"

namespace orvane {

class COrvQuickViewDlg;

/// Whether this build can open windows at all. Where it can't, a session that asked for a window runs
/// as one without, a detection without a face stays at that, and the confirmation is skipped.
bool CanOpenWindow();

/// Runs the operator's window modally; the session's result is in its m_resultCode afterwards.
void RunQuickView(COrvQuickViewDlg& session);

/// Shows a picture of the cropped face for half a second.
void ShowFaceConfirm(const Bitmap& face);

/// Shows a message box with one button.
void ShowMessage(const char* text);

/// Whether a handle of the host names a window that can own ours.
bool IsWindowHandle(void* handle);

} // namespace orvane
