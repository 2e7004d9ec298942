// The module itself: opened as the library opens it, in this process.
#include "tests/capture/gstreamer/source_fixture.h"

#include <dlfcn.h>

namespace orvane::test {
namespace {

using Entry = void* (*)(int32);

Entry OpenModule() {
    void* module = dlopen(ORVANE_CAMERA_MODULE, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr) {
        ADD_FAILURE() << dlerror();
        return nullptr;
    }
    return reinterpret_cast<Entry>(dlsym(module, "orvane_video_system"));
}

class CameraModule : public Source {};

TEST_F(CameraModule, HasOneVersionOfTheSeam) {
    const Entry entry = OpenModule();
    ASSERT_NE(entry, nullptr);
    void* system = entry(kVideoSeamVersion);
    EXPECT_NE(system, nullptr);
    EXPECT_EQ(entry(kVideoSeamVersion), system);
    for (const int32 other : {kVideoSeamVersion - 1, kVideoSeamVersion + 1, -1, INT32_MAX})
        EXPECT_EQ(entry(other), nullptr) << other;
}

TEST_F(CameraModule, DeliversTheCamerasOfThisProcess) {
    const Entry entry = OpenModule();
    ASSERT_NE(entry, nullptr);
    source_.reset(static_cast<VideoSystem*>(entry(kVideoSeamVersion))->CreateVideoSource());
    ASSERT_NE(source_, nullptr);
    ASSERT_TRUE(Start(kPortraitCamera));
    EXPECT_TRUE(sink_.WaitForFrames(3));
}

} // namespace
} // namespace orvane::test
