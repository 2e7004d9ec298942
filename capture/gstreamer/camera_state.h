// How far a camera is: orders of its owner, answers of its own thread, and news from the streaming threads.
#pragma once

#include <gst/gst.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace orvane {

class CameraState {
public:
    using Patience = std::chrono::milliseconds;

    // For the owner.

    /// Whether the camera could be opened; false also when it takes longer than that.
    bool WaitForOpening(Patience patience);
    /// The state that the camera is to have; only the newest order counts. GST_STATE_NULL ends its thread.
    void Order(GstState state);
    /// False when the camera refused the last order. One that is still thinking about it did not.
    bool WaitForAnswer(Patience patience);
    /// Whether its thread has let go of everything.
    bool WaitForEnd(Patience patience);

    // For the camera's thread.

    void Opened(bool usable);
    /// Waits until there is another order than the last one that was answered.
    GstState NextOrder();
    void Answer(GstState order, bool accepted);
    void Ended();
    /// Waits until the device has agreed on a form, or broke, or for a time. False when it broke.
    bool WaitForForm();

    // For the streaming threads.

    void FormSettled();
    void Broke();

private:
    enum class Opening { underWay, usable, failed };

    template <typename Change>
    void Tell(Change change);
    template <typename Condition>
    bool Wait(Patience patience, Condition condition);

    std::mutex m_mutex; // guards all below
    std::condition_variable m_changed;
    Opening m_opening = Opening::underWay;
    GstState m_order = GST_STATE_PAUSED; // what opening comes to
    GstState m_answered = GST_STATE_PAUSED;
    bool m_refused = false;
    bool m_ended = false;
    bool m_formSettled = false;
    bool m_broke = false;
};

} // namespace orvane
