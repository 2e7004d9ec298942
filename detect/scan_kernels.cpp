#include "detect/scan_kernels.h"

#include "primitives/instruction_set.h"

namespace orvane {

const ScanKernels& CurrentScanKernels() {
#if defined(__x86_64__)
    if (CurrentInstructionSet() == InstructionSet::avx512) return kScanKernels512;
#endif
    return CurrentInstructionSet() == InstructionSet::baseline ? kScanKernels128 : kScanKernels256;
}

} // namespace orvane
