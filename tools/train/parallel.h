// Work split over a few threads. Each index is done by exactly one thread and writes only what is its own,
// so results never depend on the split.
#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace orvane::train {

/// Calls work(i) for every i below `count` on `threads` threads.
template <typename Work>
void ForEachIndex(std::size_t count, int threads, Work work) {
    std::atomic<std::size_t> next{0};
    const auto run = [&] {
        for (std::size_t i = next++; i < count; i = next++) work(i);
    };
    std::vector<std::thread> others;
    for (int t = 1; t < threads; ++t) others.emplace_back(run);
    run();
    for (std::thread& other : others) other.join();
}

} // namespace orvane::train
