#include "detect/scan_kernels.h"

#include "primitives/instruction_set.h"

namespace orvane {

const ScanKernels& CurrentScanKernels() {
    return CurrentInstructionSet() == InstructionSet::avx2 ? kScanKernels256 : kScanKernels128;
}

} // namespace orvane
