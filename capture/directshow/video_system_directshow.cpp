// The video of Windows.
#include "capture/directshow/directshow_source.h"
#include "capture/video_system.h"

#include <new>

namespace orvane {
namespace {

class DirectShowVideo final : public VideoSystem {
public:
    VideoSource* CreateVideoSource() override { return new (std::nothrow) DirectShowSource; }
};

} // namespace

VideoSystem& ThisVideoSystem() {
    static DirectShowVideo system;
    return system;
}

} // namespace orvane
