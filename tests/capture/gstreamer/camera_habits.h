// What the cameras for tests are like.
#pragma once

#include "tests/capture/gstreamer/test_cameras.h"

#include <gst/gst.h>

namespace orvane::test {

enum class Habit {
    delivers,
    refuses,
    isBusy,
    isBusyLater,
    staysSilent,
    dies,
    ends,
    changesSize,
    sticksInOpening,
    sticksInRunning,
};

struct CameraHabits {
    const char* name;
    const char* product; // null: it has none
    const char* path;    // null: it has none
    const char* caps;    // of the device
    Habit habit = Habit::delivers;
    bool portrait = false; // else the pattern
    bool live = true;
    bool jpeg = false;
};

/// A new element that behaves so; null for a camera that refuses. `habits` stay for ever.
GstElement* NewCameraElement(const CameraHabits& habits);

} // namespace orvane::test
