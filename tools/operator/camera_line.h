// A camera on one line, for people and for scripts.
#pragma once

#include "tools/operator/camera_list.h"

namespace orvane::tools {

/// "0  Test camera  640x480 30/s YUY2, 1280x720 30/s MJPG, 320x240 15/s YUY2, ... 7 more": the first three of the
/// different formats. Description or path stand in for a name that is absent.
std::string CameraLine(const Camera& camera);

/// One JSON object with all that is known.
std::string CameraJson(const Camera& camera);

} // namespace orvane::tools
