// The newest frame as an object of the system.
#pragma once

#include "capture/video_capture.h"

#include <windows.h>

#include <objidl.h>

namespace orvane {

/// What such an object is. Each holds a whole bitmap file.
enum class FrameObject : int32 { stream = 1, sequentialStream = 2, picture = 3 };

/// The newest frame of a capture: an IStream, an ISequentialStream or an IPicture, which is the caller's. Null
/// where no frame can be grabbed, where memory is exhausted, and for a picture that the system can't read.
/// @param size receives the length of the file, where it is not null; 0 without one
IUnknown* GrabFrameObject(CVideoCapture& capture, FrameObject object, int32* size = nullptr);

} // namespace orvane
