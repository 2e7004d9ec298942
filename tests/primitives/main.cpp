// All tests of the primitives run once for each instruction set that this machine has, the widest last.
#include "primitives/instruction_set.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace orvane::test {
namespace {

/// Sets the instruction set anew before each test: one that selects the primitives chooses it itself.
class SetOfIteration : public ::testing::EmptyTestEventListener {
    void OnTestIterationStart(const ::testing::UnitTest&, int iteration) override {
        const bool last = iteration + 1 == ::testing::GTEST_FLAG(repeat);
        set_ = last ? BestInstructionSet() : InstructionSet::baseline;
        std::printf("instruction set: %s\n", set_ == InstructionSet::avx2 ? "AVX2" : "baseline");
    }
    void OnTestStart(const ::testing::TestInfo&) override { UseInstructionSet(set_); }

    InstructionSet set_ = InstructionSet::baseline;
};

} // namespace
} // namespace orvane::test

int main(int argc, char** argv) {
    if (orvane::BestInstructionSet() != orvane::InstructionSet::baseline) ::testing::GTEST_FLAG(repeat) = 2;
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new orvane::test::SetOfIteration);
    return RUN_ALL_TESTS();
}
