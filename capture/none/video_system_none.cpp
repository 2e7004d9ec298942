// The video of builds that reach no camera.
#include "capture/none/no_video.h"
#include "capture/video_system.h"

namespace orvane {

VideoSystem& ThisVideoSystem() {
    static NoVideo system;
    return system;
}

} // namespace orvane
