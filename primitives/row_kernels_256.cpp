// The primitives' kernels with vectors of 256 bits.
#define ORVANE_WIDE 1
#include "primitives/pixel_rows_body.h"
#include "primitives/window_rows_body.h"

namespace orvane {

const RowKernels kRowKernels256 = {
    RunHsv,          RunValueAndSaturation, RunGrey,   RunSplit,      RunSwap,
    RunCopyMasked,   RunSetMasked,          RunBitAnd, RunLimit,      RunSubtract,
    RunCountInRange, RunRoundToBytes,       RunLowest, RunSumOfThree, RunMeanOfNine,
};

} // namespace orvane
