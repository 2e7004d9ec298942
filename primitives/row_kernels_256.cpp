// The primitives' kernels with vectors of 256 bits.
#define ORVANE_WIDE 1
#define ORVANE_KERNELS kernels256 // by which one tells the forms apart in a program
#include "primitives/box_means_body.h"
#include "primitives/gradient_rows_body.h"
#include "primitives/integral_rows_body.h"
#include "primitives/pixel_rows_body.h"
#include "primitives/resize_rows_body.h"
#include "primitives/rotate_rows_body.h"
#include "primitives/scaled_means_body.h"
#include "primitives/transpose_body.h"
#include "primitives/window_rows_body.h"

namespace orvane {

using namespace kernels256;

const RowKernels kRowKernels256 = {
    RunHsv,
    RunValueAndSaturation,
    RunMarkColours,
    RunGrey,
    RunSplit,
    RunReverse,
    RunTranspose1,
    RunTranspose3,
    RunSwap,
    RunCopyMasked,
    RunCutOut,
    RunSetMasked,
    RunBitAnd,
    RunLimit,
    RunSubtract,
    RunCountInRange,
    RunCountFrom,
    RunRoundToBytes,
    RunStretch,
    RunLowest,
    RunLowestOfTwo,
    RunSumOfThree,
    RunMeanOfNine,
    {RunColumnSums<-1, 0, 1>, RunColumnSums<1, 2, 1>, RunColumnSums<3, 10, 3>, RunColumnSums<-1, -2, 0, 2, 1>,
     RunColumnSums<1, 4, 6, 4, 1>},
    {RunRowSums<-1, 0, 1>, RunRowSums<1, 2, 1>, RunRowSums<3, 10, 3>, RunRowSums<-1, -2, 0, 2, 1>,
     RunRowSums<1, 4, 6, 4, 1>},
    RunMagnitudes,
    RunRidgeBits,
    RunSpreadBits,
    RunKeepEdges,
    RunIntegral,
    RunStdDevs,
    RunLinearColumns,
    RunLinearRows,
    RunCubicColumns,
    RunCubicRows,
    RunCubicMeans<1>,
    RunCubicMeans<3>,
    RunBoxRows,
    RunBoxColumns<1>,
    RunBoxColumns<3>,
    RunBoxMeans3,
    RunNearBoxMeans<1>,
    RunNearBoxMeans<3>,
    RunTurnedRow<1>,
    RunTurnedRow<3>,
    RunTurnedRows<1>,
    RunTurnedRows<3>,
};

} // namespace orvane
