// No cameras: the list of devices is empty, so every index is beyond it.
#include "capture/video_source.h"

#include "image/result_codes.h"

namespace orvane {

int32 OpenCapture(int32) { return kCaptureFailed; }

} // namespace orvane
