// What a piece of work writes to standard output.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace orvane::test {

template <typename Work>
std::string Printed(Work work) {
    ::testing::internal::CaptureStdout();
    work();
    std::fflush(stdout);
    return ::testing::internal::GetCapturedStdout();
}

} // namespace orvane::test
