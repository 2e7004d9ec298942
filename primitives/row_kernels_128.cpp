// The primitives' kernels with vectors of 128 bits.
#define ORVANE_WIDE 0
#define ORVANE_KERNELS kernels128 // by which one tells the forms apart in a program
#include "primitives/gradient_rows_body.h"
#include "primitives/integral_rows_body.h"
#include "primitives/pixel_rows_body.h"
#include "primitives/resize_rows_body.h"
#include "primitives/transpose_body.h"
#include "primitives/window_rows_body.h"

namespace orvane {

using namespace kernels128;

const RowKernels kRowKernels128 = {
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
    nullptr,
    nullptr,
    RunBoxRows,
    RunBoxColumns<1>,
    RunBoxColumns<3>,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

} // namespace orvane
