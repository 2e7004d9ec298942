// Runs an operation as a benchmark and sets its speed beside a memcpy of the same bytes, measured in
// the same run right after it.
#pragma once

#include "bench/processor_time.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace orvane::bench {

/// The median of a list of times.
inline double Median(std::vector<double> seconds) {
    const auto middle = seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2);
    std::nth_element(seconds.begin(), middle, seconds.end());
    return *middle;
}

/// Seconds of one memcpy of `bytes`, with warm buffers.
inline double MemcpySeconds(std::size_t bytes) {
    std::vector<unsigned char> from(bytes, 1), to(bytes);
    constexpr int kCalls = 15;
    std::vector<double> seconds;
    seconds.reserve(kCalls);
    for (int i = 0; i < kCalls; ++i) {
        seconds.push_back(SecondsOf([&] {
            std::memcpy(to.data(), from.data(), bytes);
            benchmark::DoNotOptimize(to.data());
        }));
    }
    return Median(seconds);
}

/// Benchmarks `operation`, which handles `bytes` of input a call. The counters, by the median call: MB/s
/// of the operation and of memcpy, and how many memcpy times one call takes.
template <typename Operation>
void RunBesideMemcpy(benchmark::State& state, std::size_t bytes, Operation operation) {
    std::vector<double> seconds;
    for (auto _ : state) {
        seconds.push_back(SecondsOf(operation));
        benchmark::ClobberMemory();
    }
    const double once = Median(seconds);
    const double copy = MemcpySeconds(bytes);
    const double megabytes = static_cast<double>(bytes) * 1e-6;
    state.counters["MB/s"] = megabytes / once;
    state.counters["memcpy_MB/s"] = megabytes / copy;
    state.counters["memcpys"] = once / copy;
}

} // namespace orvane::bench
