// The scan's kernels with vectors of 128 bits.
#define ORVANE_WIDE 0
#define ORVANE_KERNELS kernels128 // by which one tells the forms apart in a program
#include "detect/scan_kernels_body.h"

namespace orvane {

const ScanKernels kScanKernels128 = {kernels128::kLanes,
                                     kernels128::kShortLanes,
                                     kernels128::kTileRows,
                                     kernels128::RunSample,
                                     nullptr,
                                     kernels128::RunNorms,
                                     kernels128::RunStage,
                                     kernels128::RunShortStage,
                                     kernels128::RunIntegral,
                                     kernels128::RunGradients,
                                     kernels128::RunRidges};

} // namespace orvane
