// Text on a picture, by the system's fonts.
#pragma once

#include "session/window.h"

namespace orvane {

/// WindowSystem::WriteText. Works on a copy of its own, so that any thread may call it. Where a font or
/// storage can't be had, the picture stays as it is.
void WriteTextWin32(uint8* bits, int32 width, int32 height, const TextMark& mark);

} // namespace orvane
