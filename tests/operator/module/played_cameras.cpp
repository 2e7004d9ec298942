// A module of cameras, as it lies beside the library: two that are made up.
#include "tests/support/fake_video.h"

extern "C" __attribute__((visibility("default"))) void* orvane_video_system(orvane::int32 version) {
    static orvane::test::FakeVideo video;
    if (version != orvane::kVideoSeamVersion) return nullptr;
    video.devices.resize(2);
    video.devices[0].friendlyName = L"Front";
    video.devices[0].formats = {{640, 480, 30000, "YUY2"}};
    video.devices[1].friendlyName = L"Side";
    return static_cast<orvane::VideoSystem*>(&video);
}
