// The video of this build. Each backend under capture/ defines the function once; CMake picks one.
#pragma once

#include "capture/video_source.h"

namespace orvane {

/// The video that sessions of this process use. Always the same object.
VideoSystem& ThisVideoSystem();

} // namespace orvane
