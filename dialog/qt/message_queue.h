// The window's messages to itself. Each is delivered once, in order, one a round of the event loop, so that
// input and painting come between them however many are sent.
#pragma once

#include "session/window.h"

#include <QBasicTimer>
#include <QObject>

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace orvane {

class MessageQueue : public QObject {
public:
    explicit MessageQueue(std::function<void(WindowMessage)> deliver) : deliver_(std::move(deliver)) {}

    /// From any thread. Nothing is delivered before this returns.
    void Post(WindowMessage message);
    /// What waits is delivered only while the queue runs. One that was stopped forgets what waits and takes
    /// nothing more.
    void Run(bool running);

protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    std::mutex mutex_;
    std::deque<WindowMessage> messages_;
    std::function<void(WindowMessage)> deliver_;
    QBasicTimer rounds_;
    bool running_ = false; // of the windows' thread
    bool ended_ = false;   // of any thread, under the lock
};

/// While one lives no queue delivers; what is posted waits.
class MessagePause {
public:
    MessagePause() { ++s_depth; }
    ~MessagePause() { --s_depth; }
    MessagePause(const MessagePause&) = delete;
    MessagePause& operator=(const MessagePause&) = delete;

    static bool IsOn() { return s_depth > 0; }

private:
    static inline int s_depth = 0; // of the windows' one thread
};

} // namespace orvane
