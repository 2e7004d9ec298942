// A module of cameras, as it lies beside the library: two that are made up.
#include "tests/operator/played_video.h"

extern "C" __attribute__((visibility("default"))) void* orvane_video_system(orvane::int32 version) {
    static orvane::test::PlayedVideo video;
    if (version != orvane::kVideoSeamVersion) return nullptr;
    video.cameras = {{L"Front", {}, {}, {{640, 480, 30000, "YUY2"}}}, {L"Side", {}, {}, {}}};
    return static_cast<orvane::VideoSystem*>(&video);
}
