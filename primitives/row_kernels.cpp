#include "primitives/row_kernels.h"

#include "primitives/instruction_set.h"

namespace orvane {

#if defined(__x86_64__)
namespace {

const RowKernels& WidestRowKernels() {
    static const RowKernels kWidest = [] {
        RowKernels kernels = kRowKernels256;
        UseRowKernels512(kernels);
        return kernels;
    }();
    return kWidest;
}

} // namespace
#endif

const RowKernels& CurrentRowKernels() {
#if defined(__x86_64__)
    if (CurrentInstructionSet() == InstructionSet::avx512) return WidestRowKernels();
#endif
    return CurrentInstructionSet() != InstructionSet::baseline ? kRowKernels256 : kRowKernels128;
}

} // namespace orvane
