#include "capture/gstreamer/camera_state.h"

namespace orvane {

template <typename Change>
void CameraState::Tell(Change change) {
    const std::lock_guard lock(m_mutex);
    change();
    m_changed.notify_all();
}

template <typename Condition>
bool CameraState::Wait(Patience patience, Condition condition) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, patience, condition);
}

bool CameraState::WaitForOpening(Patience patience) {
    Wait(patience, [this] { return m_opening != Opening::underWay; });
    const std::lock_guard lock(m_mutex);
    return m_opening == Opening::usable;
}

void CameraState::Order(GstState state) {
    Tell([&] { m_order = state; });
}

bool CameraState::WaitForAnswer(Patience patience) {
    Wait(patience, [this] { return m_answered == m_order; });
    const std::lock_guard lock(m_mutex);
    return m_answered != m_order || !m_refused;
}

bool CameraState::WaitForEnd(Patience patience) {
    return Wait(patience, [this] { return m_ended; });
}

void CameraState::Opened(bool usable) {
    Tell([&] { m_opening = usable ? Opening::usable : Opening::failed; });
}

GstState CameraState::NextOrder() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_order != m_answered; });
    return m_order;
}

void CameraState::Answer(GstState order, bool accepted) {
    Tell([&] {
        m_answered = order;
        m_refused = !accepted;
    });
}

void CameraState::Ended() {
    Tell([this] { m_ended = true; });
}

bool CameraState::WaitForForm() {
    // Drivers tell that another program has the camera when the form is settled, or at once after it, when
    // they set their buffers aside. A device that says nothing for long is left to come later.
    constexpr Patience kAgreement(2000), kBuffers(100);
    if (Wait(kAgreement, [this] { return m_formSettled || m_broke; })) Wait(kBuffers, [this] { return m_broke; });
    const std::lock_guard lock(m_mutex);
    return !m_broke;
}

void CameraState::FormSettled() {
    Tell([this] { m_formSettled = true; });
}

void CameraState::Broke() {
    Tell([this] { m_broke = true; });
}

} // namespace orvane
