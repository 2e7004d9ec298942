#include "tools/batch/worker_end.h"

#include "tools/support/child_process.h"
#include "tools/support/input_stream.h"
#include "tools/support/result_stream.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

namespace orvane::tools {
namespace {

constexpr std::chrono::seconds kGrace{10};
constexpr int kRunHasGone = 3;

/// What came, for as long as the process lives: the thread that reads it never ends before.
struct Inbox {
    std::mutex mutex;
    std::condition_variable came;
    std::deque<Frame> frames;
    bool ended = false;
};

Inbox& TheInbox() {
    static Inbox* const inbox = new Inbox; // outlives the statics' end
    return *inbox;
}

std::optional<Frame> ReadFrame() {
    char start[kFrameStart];
    if (!ReadInput(start, sizeof start)) return std::nullopt;
    const std::optional<std::uint32_t> length = FrameLength(start);
    if (!length) return std::nullopt;
    Frame frame{start[0], std::string(*length, '\0')};
    if (!ReadInput(frame.content.data(), frame.content.size())) return std::nullopt;
    return frame;
}

void ReadAll() {
    Inbox& inbox = TheInbox();
    for (std::optional<Frame> frame = ReadFrame();; frame = ReadFrame()) {
        const std::lock_guard<std::mutex> lock(inbox.mutex);
        inbox.ended = !frame.has_value();
        if (frame) inbox.frames.push_back(std::move(*frame));
        inbox.came.notify_one();
        if (!frame) break;
    }
    std::this_thread::sleep_for(kGrace);
    EndAtOnce(kRunHasGone);
}

} // namespace

WorkerEnd::WorkerEnd() {
    TheInbox();
    std::thread(ReadAll).detach();
}

bool WorkerEnd::Take(FrameKind kind, std::string* content) {
    Inbox& inbox = TheInbox();
    std::unique_lock<std::mutex> lock(inbox.mutex);
    inbox.came.wait(lock, [&] { return inbox.ended || !inbox.frames.empty(); });
    // What a run said before it went is not begun any more.
    if (inbox.ended || inbox.frames.front().kind != static_cast<char>(kind)) return false;
    *content = std::move(inbox.frames.front().content);
    inbox.frames.pop_front();
    return true;
}

void WorkerEnd::Give(FrameKind kind, const std::string& content) {
    WriteResult(FrameBytes({static_cast<char>(kind), content}));
}

} // namespace orvane::tools
