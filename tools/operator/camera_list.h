// The cameras of a video source as plain values: texts as UTF-8, whatever the devices tell.
#pragma once

#include "capture/video_source.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

/// A form in which a camera delivers frames.
struct CameraFormat {
    int32 width = 0;
    int32 height = 0;
    int32 framesIn1000s = 0; ///< In a thousand seconds; 0 or less unknown.
    std::string pixels;      ///< Printable ASCII; may be empty.
};

struct Camera {
    int32 index = 0; ///< What orv_DetectFaceLive takes.
    std::optional<std::string> name;
    std::optional<std::string> description;
    std::optional<std::string> path;
    std::vector<CameraFormat> formats; ///< In the camera's order.
};

/// All cameras, in the system's order. What a camera does not tell, or tells as an empty text, is absent.
std::vector<Camera> ListCameras(VideoSource& source);

} // namespace orvane::tools
