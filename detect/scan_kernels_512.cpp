// The scan's kernels with vectors of 512 bits for what stands close together, and of 256 for all else.
#define ORVANE_WIDE 1
#define ORVANE_WIDEST 1
#define ORVANE_KERNELS kernels512 // by which one tells the forms apart in a program
#include "detect/scan_kernels_body.h"

namespace orvane {

const ScanKernels kScanKernels512 = {kernels512::kLanes,       kernels512::kShortLanes,     kernels512::kTileRows,
                                     kernels512::RunSample,    kernels512::RunSamplePieces, kernels512::RunNorms,
                                     kernels512::RunStage,     kernels512::RunShortStage,   kernels512::RunIntegral,
                                     kernels512::RunGradients, kernels512::RunRidges};

} // namespace orvane
