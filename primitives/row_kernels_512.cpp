// Those of the primitives' kernels that gain from twice as many registers, or from vectors of 512 bits.
#define ORVANE_WIDE 1
#define ORVANE_WIDEST 1
#define ORVANE_KERNELS kernels512 // by which one tells the forms apart in a program
#include "primitives/box_means_body.h"
#include "primitives/gradient_rows_body.h"
#include "primitives/pixel_rows_body.h"
#include "primitives/rotate_rows_body.h"
#include "primitives/scaled_means_body.h"

namespace orvane {

using namespace kernels512;

const WidestRowKernels kRowKernels512 = {
    .hsv = RunHsv,
    .magnitudes = RunMagnitudes,
    .ridgeBits = RunRidgeBits,
    .cubicMeans1 = RunCubicMeans<1>,
    .cubicMeans3 = RunCubicMeans<3>,
    .boxMeans3 = RunBoxMeans3,
    .nearBoxMeans1 = RunNearBoxMeans<1>,
    .nearBoxMeans3 = RunNearBoxMeans<3>,
    .turnedRow3 = RunTurnedRow<3>,
    .turnedRows3 = RunTurnedRows<3>,
};

} // namespace orvane
