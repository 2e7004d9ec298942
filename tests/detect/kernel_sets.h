// The forms of the scan's kernels that this machine can run, for tests that try each.
#pragma once

#include "detect/scan_kernels.h"
#include "primitives/instruction_set.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace orvane::test {

struct KernelSet {
    const char* name;
    InstructionSet set;
    const ScanKernels& kernels;
};

inline void PrintTo(const KernelSet& set, std::ostream* out) { *out << set.name; }

inline std::vector<KernelSet> KernelSets() {
    std::vector<KernelSet> sets = {{"Baseline", InstructionSet::baseline, kScanKernels128}};
    const InstructionSet best = BestInstructionSet();
    if (best >= InstructionSet::avx2) sets.push_back({"Avx2", InstructionSet::avx2, kScanKernels256});
#if defined(__x86_64__)
    if (best >= InstructionSet::avx512) sets.push_back({"Avx512", InstructionSet::avx512, kScanKernels512});
#endif
    return sets;
}

inline std::string NameOfSet(const ::testing::TestParamInfo<KernelSet>& info) { return info.param.name; }

/// An instruction set in use for the length of a test.
class InstructionSetGuard {
public:
    explicit InstructionSetGuard(InstructionSet set) : before_(CurrentInstructionSet()) { UseInstructionSet(set); }
    ~InstructionSetGuard() { UseInstructionSet(before_); }
    InstructionSetGuard(const InstructionSetGuard&) = delete;
    InstructionSetGuard& operator=(const InstructionSetGuard&) = delete;

private:
    InstructionSet before_;
};

} // namespace orvane::test
