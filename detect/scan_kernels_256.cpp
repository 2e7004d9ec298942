// The scan's kernels with vectors of 256 bits.
#define ORVANE_LANES 8
#include "detect/scan_kernels_body.h"

namespace orvane {

const ScanKernels kScanKernels256 = {kLanes, RunNorms, RunStage, RunIntegral, RunGradients, RunRidges};

} // namespace orvane
