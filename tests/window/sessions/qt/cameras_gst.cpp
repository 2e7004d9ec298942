#include "tests/capture/gstreamer/test_cameras.h"
#include "tests/window/sessions/cameras.h"

namespace orvane::test {

struct Cameras::Played {};

Cameras::Cameras() {
    RegisterTestCameras();
    PlugAllTestCameras();
}
Cameras::~Cameras() = default;

int32 Cameras::IndexOf(Camera camera) const {
    switch (camera) {
    case Camera::portrait:
        return TestCameraIndex(kPortraitCamera);
    case Camera::pattern:
        return TestCameraIndex(kPatternCamera);
    case Camera::broken:
        return TestCameraIndex(kBusyCamera);
    case Camera::silent:
        return TestCameraIndex(kSilentCamera);
    case Camera::mortal:
        return TestCameraIndex(kDyingCamera);
    }
    return -1;
}

} // namespace orvane::test
