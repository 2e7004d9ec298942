#include "primitives/row_kernels.h"

#include "primitives/instruction_set.h"

namespace orvane {

const RowKernels& CurrentRowKernels() {
    return CurrentInstructionSet() != InstructionSet::baseline ? kRowKernels256 : kRowKernels128;
}

} // namespace orvane
