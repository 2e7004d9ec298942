// A worker that does as its job says: well, badly, or not at all.
#include "tools/batch/worker_end.h"
#include "tools/support/child_process.h"
#include "tools/support/result_stream.h"

#include <chrono>
#include <cstdlib>
#include <new>
#include <string>
#include <thread>

using namespace orvane::tools;

int main() {
    ReserveResultStream();
    WorkerEnd run;
    std::string greeting;
    if (!run.Take(FrameKind::greeting, &greeting)) return 1;
    int done = 0;
    for (std::string job; run.Take(FrameKind::job, &job);) {
        if (job == "crash") std::abort();
        if (job == "leave") return 7;
        if (job == "hang") std::this_thread::sleep_for(std::chrono::hours(1));
        if (job == "babble") WriteResult("no frame at all, whatever one makes of it");
        if (job == "eat") {
            LimitOwnMemory(std::uint64_t{256} << 20);
            try {
                for (int blocks = 0; blocks < 1024; ++blocks) {
                    volatile char* block = static_cast<char*>(::operator new(1U << 20));
                    block[0] = 1; // kept for ever
                }
                job = "full";
            } catch (const std::bad_alloc&) {
                job = "hungry";
            }
        }
        if (job.rfind("ask ", 0) == 0) {
            std::string answer;
            run.Give(FrameKind::question, job.substr(4));
            if (!run.Take(FrameKind::answer, &answer)) return 2;
            job += " " + answer;
        }
        if (job.rfind("wait ", 0) == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(job.c_str() + 5)));
        }
        run.Give(FrameKind::result, greeting + " " + job + " " + std::to_string(++done));
        if (job == "last") return 0;
    }
    return 0;
}
