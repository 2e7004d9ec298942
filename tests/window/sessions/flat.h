// What a process holds does not grow with the sessions that it serves.
#pragma once

#include "tests/window/sessions/held.h"

#include <gtest/gtest.h>

#include <functional>
#include <iostream>

namespace orvane::test {

/// Runs sessions and looks at what the process holds, before the second half of them and at the end.
inline void ExpectFlat(int sessions, const std::function<void(int)>& run) {
    Held before = HeldByThisProcess(); // the first look takes megabytes under Wine, and keeps them
    const int warmUp = sessions / 2;   // caches of the toolkit fill, each at its time
    for (int number = 0; number < sessions && !::testing::Test::HasFailure(); ++number) {
        if (number == warmUp) before = HeldByThisProcess();
        run(number);
    }
    ASSERT_FALSE(::testing::Test::HasFailure()) << "a session went wrong";
    const Held after = HeldByThisProcess();
    std::cout << sessions << " sessions: memory " << before.memory << " -> " << after.memory << " bytes, handles "
              << before.handles << " -> " << after.handles << ", threads " << before.threads << " -> " << after.threads
              << "\n";
    constexpr int64 kLateCaches = 16;
    EXPECT_LE(after.handles, before.handles + kLateCaches);
    constexpr int64 kLateHelpers = 2; // threads of the toolkit's own
    EXPECT_LE(after.threads, before.threads + kLateHelpers);
#ifndef __SANITIZE_ADDRESS__            // which keeps freed memory back, and looks for leaks by itself
    constexpr int64 kSpread = 12 << 20; // of the allocators, not growing with the number of sessions
    EXPECT_LE(after.memory, before.memory + kSpread);
#endif
}

} // namespace orvane::test
