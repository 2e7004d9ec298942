// The scan's kernels with vectors of 256 bits.
#define ORVANE_WIDE 1
#define ORVANE_KERNELS kernels256 // by which one tells the forms apart in a program
#include "detect/scan_kernels_body.h"

namespace orvane {

const ScanKernels kScanKernels256 = {kernels256::kLanes,       kernels256::kShortLanes,     kernels256::kTileRows,
                                     kernels256::RunSample,    kernels256::RunSamplePieces, kernels256::RunNorms,
                                     kernels256::RunStage,     kernels256::RunShortStage,   kernels256::RunIntegral,
                                     kernels256::RunGradients, kernels256::RunRidges};

} // namespace orvane
