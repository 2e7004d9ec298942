#include "capture/gstreamer/camera.h"

#include <utility>

namespace orvane {
namespace {

using Patience = CameraState::Patience;
constexpr Patience kOpening(5000), kRunning(1000), kClosing(3000);

bool Set(GstElement* pipeline, GstState state) {
    return gst_element_set_state(pipeline, state) != GST_STATE_CHANGE_FAILURE;
}

/// The camera's thread.
void Work(CameraLink& link, GstDevice* device, const CameraForm& form) {
    ElementOwner pipeline = BuildPipeline(device, form, link);
    const bool usable = pipeline != nullptr && Set(pipeline.get(), GST_STATE_PAUSED) && link.state.WaitForForm();
    link.state.Opened(usable);
    while (usable) {
        const GstState order = link.state.NextOrder();
        if (order == GST_STATE_NULL) break;
        link.state.Answer(order, Set(pipeline.get(), order));
    }
    if (pipeline != nullptr) EndPipeline(std::move(pipeline));
}

} // namespace

std::unique_ptr<Camera> Camera::Open(GstDevice* device, CameraForm form) {
    if (FrameBytes(form.size) == 0) return nullptr;
    std::unique_ptr<Camera> camera(new Camera(form.size));
    DeviceOwner own(GST_DEVICE(gst_object_ref(device)));
    camera->m_thread = std::thread([link = camera->m_link, own = std::move(own), chosen = std::move(form)]() noexcept {
        try {
            Work(*link, own.get(), chosen);
        } catch (...) { // exhausted memory, at the worst
            link->state.Opened(false);
        }
        link->gate.SendTo(nullptr);
        link->state.Ended();
    });
    return camera->m_link->state.WaitForOpening(kOpening) ? std::move(camera) : nullptr;
}

Camera::~Camera() {
    m_link->gate.SendTo(nullptr);
    if (!m_thread.joinable()) return; // the system had no thread for it
    m_link->state.Order(GST_STATE_NULL);
    if (m_link->state.WaitForEnd(kClosing)) {
        m_thread.join();
    } else {
        m_thread.detach();
    }
}

bool Camera::Run() {
    m_link->gate.Let(true);
    m_link->state.Order(GST_STATE_PLAYING);
    return m_link->state.WaitForAnswer(kRunning);
}

void Camera::Pause() {
    m_link->gate.Let(false);
    m_link->state.Order(GST_STATE_PAUSED);
}

} // namespace orvane
