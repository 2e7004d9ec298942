// The scan's kernels with vectors of 128 bits.
#define ORVANE_LANES 4
#include "detect/scan_kernels_body.h"

namespace orvane {

const ScanKernels kScanKernels128 = {kLanes, RunNorms, RunStage, RunIntegral, RunGradients, RunRidges};

} // namespace orvane
