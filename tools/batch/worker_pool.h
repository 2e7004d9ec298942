// Jobs done by several worker processes side by side. A worker that crashes, or that takes longer than it may, costs
// the job that it had and no other: another worker takes its place.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orvane::tools {

/// What the two sides say. A worker gets the greeting once and then one job after the other; to each it gives any
/// number of questions, each of which is answered, and one result.
enum class FrameKind : char { greeting = 'g', job = 'j', question = 'q', answer = 'a', result = 'r' };

struct PoolSettings {
    std::vector<std::string> command; ///< A worker: its program and its arguments.
    std::string greeting;
    int workers = 1;
    std::chrono::milliseconds timeout{30000}; ///< Of one job.
    std::chrono::milliseconds grace{2000};    ///< For the jobs under way when the run is stopped.
};

enum class JobEnd {
    done,
    crashed,    ///< The worker ended in the middle of it.
    timedOut,   ///< The worker was ended, since it took too long.
    notStarted, ///< No worker could be started for it.
    stopped     ///< The run was stopped, and the worker was ended in the middle of it.
};

struct JobOutcome {
    JobEnd end = JobEnd::done;
    std::string result;       ///< What the worker said; or what is known of its end, one line.
    std::uint64_t worker = 0; ///< Number of its process.
};

/// Whoever gives the jobs and takes the results; all of it is called on one thread.
class PoolClient {
public:
    virtual ~PoolClient() = default;
    /// The next job's bytes, and a number by which it is told again. False when there is none, now or ever.
    virtual bool NextJob(std::size_t* number, std::string* job) = 0;
    /// Whether there may be jobs later, though there is none now and none under way.
    virtual bool AwaitsJobs() { return false; }
    virtual std::string Answer(std::size_t number, const std::string& question) = 0;
    virtual void Finish(std::size_t number, const JobOutcome& outcome) = 0;
    /// Asked some ten times a second; true stops the run.
    virtual bool Tick() = 0;
};

/// Runs until the client has no further job, awaits none and all are finished, or it is stopped.
void RunPool(const PoolSettings& settings, PoolClient& client);

} // namespace orvane::tools
