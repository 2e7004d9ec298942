// No cameras: the list of devices is empty, so every index is beyond it.
#pragma once

#include "capture/video_source.h"

namespace orvane {

class NoVideo final : public VideoSystem {
public:
    VideoSource* CreateVideoSource() override { return nullptr; }
};

} // namespace orvane
