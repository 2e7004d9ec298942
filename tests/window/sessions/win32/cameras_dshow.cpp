#include "tests/capture/directshow/test_cameras.h"
#include "tests/window/sessions/cameras.h"

namespace orvane::test {

struct Cameras::Played {
    // In the order of the numbers that they get.
    TestCameras cameras{{TestCamera::previewAndCapture, TestCamera::captureOnly, TestCamera::noFilter,
                         TestCamera::silent, TestCamera::unplugged}};
};

Cameras::Cameras() : played_(std::make_unique<Played>()) {}
Cameras::~Cameras() = default;

int32 Cameras::IndexOf(Camera camera) const {
    const bool hasFace = camera != Camera::pattern;
    played_->cameras.Show(hasFace ? TestCameras::MovingFace(320, 240, 100, 60, 120)
                                  : std::vector<Scene>{BlankScene(320, 240, 120), BlankScene(320, 240, 180)});
    return static_cast<int32>(camera);
}

} // namespace orvane::test
