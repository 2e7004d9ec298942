#include "primitives/row_kernels.h"

#include "primitives/instruction_set.h"

namespace orvane {

#if defined(__x86_64__)
namespace {

const RowKernels& RowKernelsWithWidest() {
    static const RowKernels kWidest = [] {
        RowKernels kernels = kRowKernels256;
        kernels.hsv = kRowKernels512.hsv;
        kernels.magnitudes = kRowKernels512.magnitudes;
        kernels.ridgeBits = kRowKernels512.ridgeBits;
        kernels.cubicMeans1 = kRowKernels512.cubicMeans1;
        kernels.cubicMeans3 = kRowKernels512.cubicMeans3;
        kernels.boxMeans3 = kRowKernels512.boxMeans3;
        kernels.nearBoxMeans1 = kRowKernels512.nearBoxMeans1;
        kernels.nearBoxMeans3 = kRowKernels512.nearBoxMeans3;
        kernels.turnedRow3 = kRowKernels512.turnedRow3;
        kernels.turnedRows3 = kRowKernels512.turnedRows3;
        return kernels;
    }();
    return kWidest;
}

} // namespace
#endif

const RowKernels& CurrentRowKernels() {
#if defined(__x86_64__)
    if (CurrentInstructionSet() == InstructionSet::avx512) return RowKernelsWithWidest();
#endif
    return CurrentInstructionSet() != InstructionSet::baseline ? kRowKernels256 : kRowKernels128;
}

} // namespace orvane
