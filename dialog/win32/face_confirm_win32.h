// The confirmation of the face: a thumbnail that stands for half a second.
#pragma once

#include "session/window.h"

namespace orvane {

/// WindowSystem::ShowFaceConfirm. Returns at once where no window can be opened.
void ShowFaceConfirmWin32(PictureView thumbnail);

} // namespace orvane
