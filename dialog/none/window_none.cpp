// No windows: for the command line, for servers, and for builds without a toolkit.
#include "dialog/window.h"

namespace orvane {

bool CanOpenWindow() { return false; }

void RunQuickView(COrvQuickViewDlg&) {}

void ShowFaceConfirm(const Bitmap&) {}

void ShowMessage(const char*) {}

bool IsWindowHandle(void* handle) { return handle != nullptr; }

} // namespace orvane
