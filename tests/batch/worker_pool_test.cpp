// Worker processes that crash, hang, babble and go away: each costs its own job.
#include "tools/batch/worker_pool.h"

#include <gtest/gtest.h>

#include <map>
#include <thread>

namespace orvane::tools {
namespace {

using Jobs = std::vector<std::string>;

class PlayedClient : public PoolClient {
public:
    explicit PlayedClient(Jobs jobs) : jobs_(std::move(jobs)) {}

    bool NextJob(std::size_t* number, std::string* job) override {
        if (next_ == jobs_.size()) return false;
        *number = next_;
        *job = jobs_[next_++];
        return true;
    }
    std::string Answer(std::size_t number, const std::string& question) override {
        return question + " of " + std::to_string(number);
    }
    void Finish(std::size_t number, const JobOutcome& outcome) override {
        EXPECT_TRUE(outcomes.emplace(number, outcome).second) << number << " finished twice";
        if (jobs_[number] == "last") std::this_thread::sleep_for(std::chrono::seconds(1)); // its worker ends meanwhile
    }
    bool Tick() override { return ++ticks_ > stopAfter; }

    std::map<std::size_t, JobOutcome> outcomes;
    int stopAfter = 1 << 30;

private:
    const Jobs jobs_;
    std::size_t next_ = 0;
    int ticks_ = 0;
};

PoolSettings Settings(int workers) {
    PoolSettings settings;
    settings.command = {ORVANE_PLAYED_WORKER};
    settings.greeting = "hello";
    settings.workers = workers;
    return settings;
}

TEST(WorkerPool, EveryJobIsDoneOnceHoweverManyWorkersThereAre) {
    for (const int workers : {1, 2, 5}) {
        Jobs jobs;
        for (int i = 0; i < 40; ++i) jobs.push_back("job" + std::to_string(i));
        PlayedClient client(jobs);
        RunPool(Settings(workers), client);
        ASSERT_EQ(client.outcomes.size(), jobs.size()) << workers;
        for (const auto& [number, outcome] : client.outcomes) {
            EXPECT_EQ(outcome.end, JobEnd::done);
            EXPECT_EQ(outcome.result.rfind("hello job" + std::to_string(number) + " ", 0), 0U) << outcome.result;
        }
    }
}

TEST(WorkerPool, AWorkerDoesOneJobAfterTheOther) {
    PlayedClient client({"a", "b", "c"});
    RunPool(Settings(1), client);
    EXPECT_EQ(client.outcomes[2].result, "hello c 3") << "the worker was not kept";
}

TEST(WorkerPool, AWorkerThatEndsCostsItsOwnJobAlone) {
    for (const std::string bad : {"crash", "leave", "babble"}) {
        for (const int workers : {1, 2}) {
            PlayedClient client({"a", bad, "b", bad, "c"});
            RunPool(Settings(workers), client);
            ASSERT_EQ(client.outcomes.size(), 5U);
            for (const std::size_t number : {0, 2, 4}) EXPECT_EQ(client.outcomes[number].end, JobEnd::done) << bad;
            for (const std::size_t number : {1, 3}) {
                EXPECT_EQ(client.outcomes[number].end, JobEnd::crashed) << bad;
                EXPECT_NE(client.outcomes[number].worker, 0U);
            }
        }
    }
}

TEST(WorkerPool, AWorkerThatEndsBetweenTwoJobsCostsNone) {
    PlayedClient client({"a", "last", "b"});
    RunPool(Settings(1), client);
    ASSERT_EQ(client.outcomes.size(), 3U);
    EXPECT_EQ(client.outcomes[1].result, "hello last 2");
    EXPECT_EQ(client.outcomes[2].end, JobEnd::done) << client.outcomes[2].result;
    EXPECT_EQ(client.outcomes[2].result, "hello b 1") << "not a new worker";
}

TEST(WorkerPool, HowAWorkerEndedIsTold) {
    PlayedClient client({"leave", "crash"});
    RunPool(Settings(1), client);
    EXPECT_EQ(client.outcomes[0].result, "exit code 7");
    EXPECT_NE(client.outcomes[1].result, "");
}

TEST(WorkerPool, AWorkerThatHangsIsEndedAndReplaced) {
    PoolSettings settings = Settings(1);
    settings.timeout = std::chrono::seconds(3);
    PlayedClient client({"a", "hang", "b"});
    RunPool(settings, client);
    EXPECT_EQ(client.outcomes[0].end, JobEnd::done);
    EXPECT_EQ(client.outcomes[1].end, JobEnd::timedOut);
    EXPECT_EQ(client.outcomes[2].result, "hello b 1") << "not a new worker";
}

TEST(WorkerPool, AJobThatHangsHoldsUpNoOther) {
    PoolSettings settings = Settings(2);
    settings.timeout = std::chrono::seconds(3);
    Jobs jobs{"hang"};
    for (int i = 0; i < 20; ++i) jobs.push_back("x");
    PlayedClient client(jobs);
    RunPool(settings, client);
    EXPECT_EQ(client.outcomes[0].end, JobEnd::timedOut);
    for (std::size_t number = 1; number <= 20; ++number) {
        EXPECT_EQ(client.outcomes[number].result, "hello x " + std::to_string(number));
    }
}

TEST(WorkerPool, QuestionsAreAnsweredInTheMiddleOfAJob) {
    PlayedClient client({"ask why", "ask who", "ask \n\xFF"});
    RunPool(Settings(2), client);
    EXPECT_EQ(client.outcomes[0].result.rfind("hello ask why why of 0 ", 0), 0U) << client.outcomes[0].result;
    EXPECT_EQ(client.outcomes[2].result.rfind("hello ask \n\xFF \n\xFF of 2 ", 0), 0U) << client.outcomes[2].result;
}

TEST(WorkerPool, LongJobsAndResultsArriveWhole) {
    const std::string job(3000000, 'j');
    PlayedClient client({job});
    RunPool(Settings(1), client);
    EXPECT_EQ(client.outcomes[0].result, "hello " + job + " 1");
}

TEST(WorkerPool, AProgramThatIsNotThereStartsNoWorker) {
    PoolSettings settings = Settings(2);
    settings.command = {ORVANE_PLAYED_WORKER ".absent"};
    PlayedClient client({"a", "b"});
    RunPool(settings, client);
    for (const std::size_t number : {0, 1}) {
        EXPECT_EQ(client.outcomes[number].end, JobEnd::notStarted);
        EXPECT_EQ(client.outcomes[number].result, "cannot start: No such file or directory");
    }
}

TEST(WorkerPool, AStoppedRunEndsWhatIsUnderWayAndBeginsNothing) {
    PoolSettings settings = Settings(2);
    settings.grace = std::chrono::seconds(3);
    PlayedClient client({"hang", "wait 250", "a", "b", "c"});
    client.stopAfter = 1;
    RunPool(settings, client);
    EXPECT_EQ(client.outcomes[0].end, JobEnd::stopped);
    EXPECT_EQ(client.outcomes[1].end, JobEnd::done) << "there was time for it";
    EXPECT_EQ(client.outcomes.size(), 2U);
}

#if !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__)
TEST(WorkerPool, AWorkerGetsNoMoreMemoryThanItMayTake) {
    PlayedClient client({"eat"});
    RunPool(Settings(1), client);
    EXPECT_EQ(client.outcomes[0].result, "hello hungry 1");
}
#endif

} // namespace
} // namespace orvane::tools
