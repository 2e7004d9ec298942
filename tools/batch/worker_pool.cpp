#include "tools/batch/worker_pool.h"

#include "tools/batch/packing.h"
#include "tools/support/child_process.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace orvane::tools {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kTick{100};

struct Event {
    std::size_t lane = 0;
    std::optional<std::string> question; ///< Else the job is finished.
    JobOutcome outcome;
};

/// What the lanes tell the thread of the client.
class Events {
public:
    void Put(Event event) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            events_.push_back(std::move(event));
        }
        came_.notify_one();
    }
    std::optional<Event> Take(std::chrono::milliseconds patience) {
        std::unique_lock<std::mutex> lock(mutex_);
        if (!came_.wait_for(lock, patience, [&] { return !events_.empty(); })) return std::nullopt;
        Event event = std::move(events_.front());
        events_.pop_front();
        return event;
    }

private:
    std::mutex mutex_;
    std::condition_variable came_;
    std::deque<Event> events_;
};

/// A thread with one worker at a time, which talks with it and waits for it.
class Lane {
public:
    Lane(std::size_t index, const PoolSettings& settings, Events& events)
        : index_(index), settings_(settings), events_(events), thread_([this] { Run(); }) {}

    ~Lane() {
        Say(&Lane::quit_, true);
        thread_.join();
    }
    Lane(const Lane&) = delete;
    Lane& operator=(const Lane&) = delete;

    void Give(std::string job) { Say(&Lane::job_, std::optional(std::move(job))); }
    void Answer(std::string answer) { Say(&Lane::answer_, std::optional(std::move(answer))); }
    /// Ends the worker, which then finishes its job with this reason. From the client's thread.
    void Kill(JobEnd reason) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            reason_ = reason;
        }
        said_.notify_all();
        worker_.Kill();
    }

private:
    template <typename T>
    void Say(T Lane::*what, T value) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            this->*what = std::move(value);
        }
        said_.notify_all();
    }

    void Run() {
        for (;;) {
            std::string job;
            {
                std::unique_lock<std::mutex> lock(mutex_);
                said_.wait(lock, [&] { return quit_ || job_.has_value(); });
                if (!job_.has_value()) break;
                job = std::move(*job_);
                job_.reset();
                reason_ = JobEnd::crashed;
            }
            JobOutcome outcome = Work(job);
            events_.Put({index_, std::nullopt, std::move(outcome)});
        }
        worker_.Wait(); // its input ends, and it with it
    }

    JobOutcome Work(const std::string& job) {
        JobOutcome outcome;
        // One that ended between two jobs is nobody's failure.
        if (!worker_.IsAlive()) {
            if (!worker_.Start(settings_.command, &outcome.result)) {
                outcome.end = JobEnd::notStarted;
                return outcome;
            }
            Send(FrameKind::greeting, settings_.greeting);
        }
        outcome.worker = worker_.Id();
        if (Send(FrameKind::job, job) && Listen(&outcome.result)) return outcome;
        worker_.Kill();
        outcome.result = worker_.Wait();
        const std::lock_guard<std::mutex> lock(mutex_);
        outcome.end = reason_;
        return outcome;
    }

    bool Send(FrameKind kind, const std::string& content) {
        return worker_.Write(FrameBytes({static_cast<char>(kind), content}));
    }

    /// Until the result; false when the worker ends before it, or says what it should not.
    bool Listen(std::string* result) {
        for (;;) {
            char start[kFrameStart];
            if (!worker_.Read(start, sizeof start)) return false;
            const std::optional<std::uint32_t> length = FrameLength(start);
            if (!length) return false;
            std::string content(*length, '\0');
            if (!worker_.Read(content.data(), content.size())) return false;
            if (start[0] == static_cast<char>(FrameKind::result)) {
                *result = std::move(content);
                return true;
            }
            if (start[0] != static_cast<char>(FrameKind::question) || !Ask(std::move(content))) return false;
        }
    }

    bool Ask(std::string question) {
        events_.Put({index_, std::move(question), {}});
        std::string answer;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            said_.wait(lock, [&] { return answer_.has_value() || reason_ != JobEnd::crashed; });
            if (!answer_.has_value()) return false;
            answer = std::move(*answer_);
            answer_.reset();
        }
        return Send(FrameKind::answer, answer);
    }

    const std::size_t index_;
    const PoolSettings& settings_;
    Events& events_;
    ChildProcess worker_;
    std::mutex mutex_;
    std::condition_variable said_;
    std::optional<std::string> job_;
    std::optional<std::string> answer_;
    JobEnd reason_ = JobEnd::crashed; ///< Why the worker ends, should it.
    bool quit_ = false;
    std::thread thread_; ///< Last: it uses all others.
};

/// The client's side of the pool.
class Pool {
public:
    Pool(const PoolSettings& settings, PoolClient& client) : settings_(settings), client_(client) {}

    void Run() {
        for (;;) {
            if (!stopping_) GiveJobs();
            if (busy_ == 0 && (stopping_ || !client_.AwaitsJobs())) return;
            Handle(events_.Take(kTick));
            // As often as the clock says, however many events come.
            if (Clock::now() < nextTick_) continue;
            nextTick_ = Clock::now() + kTick;
            if (client_.Tick() && !stopping_) {
                stopping_ = true;
                stopAt_ = Clock::now() + settings_.grace;
            }
            EndLateOnes();
        }
    }

private:
    struct Place {
        std::unique_ptr<Lane> lane;
        std::optional<std::size_t> job;
        Clock::time_point deadline;
    };

    void GiveJobs() {
        for (std::size_t i = 0; busy_ < settings_.workers; ++i) {
            if (i == places_.size()) {
                if (i == static_cast<std::size_t>(settings_.workers)) return;
                places_.emplace_back();
            }
            Place& place = places_[i];
            if (place.job) continue;
            std::size_t number = 0;
            std::string job;
            if (!client_.NextJob(&number, &job)) return;
            // Workers are started as they are needed.
            if (place.lane == nullptr) place.lane = std::make_unique<Lane>(i, settings_, events_);
            place.job = number;
            place.deadline = Clock::now() + settings_.timeout;
            ++busy_;
            place.lane->Give(std::move(job));
        }
    }

    void Handle(std::optional<Event> event) {
        if (!event) return;
        Place& place = places_[event->lane];
        if (event->question) {
            place.lane->Answer(client_.Answer(*place.job, *event->question));
            return;
        }
        const std::size_t number = *place.job;
        place.job.reset();
        --busy_;
        client_.Finish(number, event->outcome);
    }

    void EndLateOnes() {
        const Clock::time_point now = Clock::now();
        for (Place& place : places_) {
            if (!place.job) continue;
            if (now >= place.deadline) {
                place.lane->Kill(JobEnd::timedOut);
            } else if (stopping_ && now >= stopAt_) {
                place.lane->Kill(JobEnd::stopped);
            }
        }
    }

    const PoolSettings& settings_;
    PoolClient& client_;
    Events events_;
    std::vector<Place> places_;
    int busy_ = 0;
    bool stopping_ = false;
    Clock::time_point stopAt_;
    Clock::time_point nextTick_ = Clock::now();
};

} // namespace

void RunPool(const PoolSettings& settings, PoolClient& client) { Pool(settings, client).Run(); }

} // namespace orvane::tools
