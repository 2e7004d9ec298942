#include "primitives/instruction_set.h"

namespace orvane {
namespace {

InstructionSet g_instructionSet = InstructionSet::baseline;

} // namespace

InstructionSet BestInstructionSet() {
#if defined(__i386__) || defined(__x86_64__)
    // The compiler's help asks CPUID and whether the system saves the wide registers.
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) return InstructionSet::avx2;
#endif
    return InstructionSet::baseline;
}

InstructionSet CurrentInstructionSet() { return g_instructionSet; }

void UseInstructionSet(InstructionSet set) { g_instructionSet = set; }

} // namespace orvane
