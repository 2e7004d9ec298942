#include "primitives/instruction_set.h"

namespace orvane {
namespace {

InstructionSet g_instructionSet = InstructionSet::baseline;

} // namespace

InstructionSet BestInstructionSet() {
#if defined(__i386__) || defined(__x86_64__)
    // The compiler's help asks CPUID and whether the system saves the wide registers.
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("fma")) return InstructionSet::baseline;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vl"))
        return InstructionSet::avx512;
#endif
    return InstructionSet::avx2;
#else
    return InstructionSet::baseline;
#endif
}

InstructionSet CurrentInstructionSet() { return g_instructionSet; }

void UseInstructionSet(InstructionSet set) { g_instructionSet = set; }

} // namespace orvane
