#include "dialog/qt/message_queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimerEvent>

namespace orvane {
namespace {

constexpr auto kWakeUp = static_cast<QEvent::Type>(QEvent::User + 20);

} // namespace

void MessageQueue::Post(WindowMessage message) {
    {
        const std::lock_guard lock(mutex_);
        if (ended_) return;
        messages_.push_back(message);
        if (messages_.size() > 1) return; // the wake-up for those before it is on its way
    }
    QCoreApplication::postEvent(this, new QEvent(kWakeUp));
}

void MessageQueue::Run(bool running) {
    running_ = running;
    const std::lock_guard lock(mutex_);
    ended_ = !running;
    if (ended_) messages_.clear();
    if (messages_.empty()) {
        rounds_.stop();
    } else {
        rounds_.start(0, this);
    }
}

bool MessageQueue::event(QEvent* event) {
    if (event->type() != kWakeUp) return QObject::event(event);
    // A timer without an interval is served once a round, behind input; posted events would all be
    // served in one go.
    if (running_) rounds_.start(0, this);
    return true;
}

void MessageQueue::timerEvent(QTimerEvent*) {
    if (MessagePause::IsOn()) {
        constexpr int kLookAgain = 10; // milliseconds; no interval at all would keep the processor busy
        rounds_.start(kLookAgain, this);
        return;
    }
    WindowMessage message;
    {
        const std::lock_guard lock(mutex_);
        if (messages_.empty()) return rounds_.stop();
        message = messages_.front();
        messages_.pop_front();
        if (messages_.empty()) {
            rounds_.stop(); // the next one to be posted brings its wake-up
        } else {
            rounds_.start(0, this);
        }
    }
    deliver_(message);
}

} // namespace orvane
