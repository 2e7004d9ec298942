// A device at work. All that may make it wait, opening and every change of state, happens on a thread of the
// camera's own: a driver that never answers costs its owner some seconds and no more.
#pragma once

#include "capture/gstreamer/camera_pipeline.h"

#include <memory>
#include <thread>

namespace orvane {

class Camera {
public:
    /// Connects a device; null when it can't be used. One that opens and never delivers can be used.
    static std::unique_ptr<Camera> Open(GstDevice* device, CameraForm form);
    /// Gives the device back. Nobody calls the sink once this has returned, also when the device does not answer;
    /// its thread lets go of everything as soon as it does.
    ~Camera();
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    void SendTo(FrameSink& sink) { m_link->gate.SendTo(&sink); }
    /// False when the device refuses.
    bool Run();
    /// Holds back the frames at once, and the device as soon as it listens.
    void Pause();

private:
    explicit Camera(ImageSize size) : m_link(std::make_shared<CameraLink>(size)) {}

    std::shared_ptr<CameraLink> m_link; // also the thread's
    std::thread m_thread;
};

} // namespace orvane
