// Cameras for tests: devices of the system that play what a test gives them, since machines that run tests have none.
//
//     TestCameras cameras({TestCamera::previewAndCapture});
//     cameras.Show({FaceScene(320, 240, 100, 60, 120)});
//     ... // whoever lists the cameras now finds these, in this order
//
// Link orvane_test_cameras. The filters lie in a library beside the test program; they are entered in the system's
// list and leave it with the object. The list is the machine's, so one test program at a time may use it
// (orvane_needs_screen sees to that); cameras of the machine itself may stand in it as well.
#pragma once

#include "tests/capture/directshow/camera/camera_kinds.h"
#include "tests/support/face_scene.h"
#include "tests/support/temp_folder.h"

#include <optional>
#include <vector>

namespace orvane::test {

class TestCameras {
public:
    /// What an earlier program left in the list, because it ended early, goes first.
    explicit TestCameras(std::vector<TestCamera> cameras);
    ~TestCameras();
    TestCameras(const TestCameras&) = delete;
    TestCameras& operator=(const TestCameras&) = delete;

    /// What cameras show that are opened from now on, again and again, 30 frames a second. All of one size.
    void Show(const std::vector<Scene>& frames);

    /// The same scene, with the face a pixel or two aside in each frame.
    static std::vector<Scene> MovingFace(int32 width, int32 height, int32 left, int32 bottom, int32 side);

    /// What the filters that this process has loaded tell of themselves; zeros before it has loaded any.
    static CameraCounters Counters();

private:
    std::optional<TempFolder> frames_;
};

/// How a camera is called, and how it describes itself; null for one that doesn't.
inline const CameraKind& KindOf(TestCamera camera) { return kCameraKinds[static_cast<int>(camera)]; }

} // namespace orvane::test
