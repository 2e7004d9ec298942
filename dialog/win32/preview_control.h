// The picture control of the preview. Live video changes its picture thirty times a second: the control's own
// drawing, which erases first, would flicker.
#pragma once

#include <windows.h>

namespace orvane {

/// From now on the control draws its picture at its upper left corner and nothing beneath it, and keeps its size
/// whatever picture it is given.
void DrawWithoutFlicker(HWND control);

/// Gives the control a picture, which it does not draw by itself yet; the one before comes back.
HBITMAP ChangePicture(HWND control, HBITMAP picture);

} // namespace orvane
