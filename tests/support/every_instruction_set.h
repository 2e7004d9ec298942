// Runs all tests of a program once for each instruction set that this machine has, the widest last, or with that alone.
#pragma once

#include "primitives/instruction_set.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace orvane::test {

/// Sets the instruction set anew before each test: one that selects the primitives chooses it itself.
class SetOfIteration : public ::testing::EmptyTestEventListener {
    void OnTestIterationStart(const ::testing::UnitTest&, int iteration) override {
        const int left = ::testing::GTEST_FLAG(repeat) - 1 - iteration;
        set_ = static_cast<InstructionSet>(static_cast<int>(BestInstructionSet()) - left);
        constexpr const char* kNames[] = {"baseline", "AVX2", "AVX-512"};
        std::printf("instruction set: %s\n", kNames[static_cast<int>(set_)]);
    }
    void OnTestStart(const ::testing::TestInfo&) override { UseInstructionSet(set_); }

    InstructionSet set_ = InstructionSet::baseline;
};

inline int RunOnWidestInstructionSet(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new SetOfIteration);
    return RUN_ALL_TESTS();
}

inline int RunOnEveryInstructionSet(int argc, char** argv) {
    ::testing::GTEST_FLAG(repeat) = static_cast<int>(BestInstructionSet()) + 1;
    return RunOnWidestInstructionSet(argc, argv);
}

} // namespace orvane::test
