// Integral images. Sums run in 64 bits and are rounded once, on their way into the float plane.
#include "primitives/integral.h"

#include "primitives/row_kernels.h"

#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

RectRows RowsOf(const float* sum, int32 sumStep, const double* sqsum, int32 sqsumStep, ImageRect rect, int32 y) {
    const int32 top = rect.y + y;
    const int32 bottom = top + rect.height;
    return {RowAt(sum, sumStep, top) + rect.x,
            RowAt(sum, sumStep, bottom) + rect.x,
            RowAt(sqsum, sqsumStep, top) + rect.x,
            RowAt(sqsum, sqsumStep, bottom) + rect.x,
            rect.width,
            static_cast<double>(rect.width) * rect.height};
}

float StdDevAt(const RectRows& r, int32 x) {
    const double mean =
        (static_cast<double>(r.sumTop[x]) - r.sumTop[x + r.width] - r.sumBottom[x] + r.sumBottom[x + r.width]) / r.area;
    const double meanSquare =
        (r.squareTop[x] - r.squareTop[x + r.width] - r.squareBottom[x] + r.squareBottom[x + r.width]) / r.area;
    return static_cast<float>(std::sqrt(std::max(meanSquare - mean * mean, 0.0)));
}

/// A row of any length.
void SumLongRow(const uint8* pixels, int32 width, const IntegralRows& r) {
    int64 rowSum = 0, rowSquares = 0;
    for (int32 x = 0; x < width; ++x) {
        const int32 p = pixels[x];
        rowSum += p;
        rowSquares += static_cast<int64>(p * p);
        r.sum[x] = static_cast<float>(static_cast<double>(rowSum) + static_cast<double>(r.sumAbove[x]));
        r.squares[x] = r.squaresAbove[x] + static_cast<double>(rowSquares);
    }
}

int32 CheckRectStdDev(const float* sum, int32 sumStep, const double* sqsum, int32 sqsumStep, const float* dst,
                      int32 dstStep, ImageSize roi, ImageRect rect) {
    if (sum == nullptr || sqsum == nullptr || dst == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    const int64 columns = static_cast<int64>(roi.width) + rect.x + rect.width;
    if (sumStep < 4 * columns || dstStep < int64{4} * roi.width || sqsumStep < 8 * columns) return kStepTooSmall;
    if (sumStep % 4 != 0 || dstStep % 4 != 0 || sqsumStep % 8 != 0) return kStepNotMultiple;
    if (rect.x < 0 || rect.y < 0 || rect.width < 1 || rect.height < 1) return kBadSize;
    return kOk;
}

} // namespace

namespace generic {

int32 primSqrIntegral_8u32f64f_C1(const uint8* src, int32 srcStep, float* sum, int32 sumStep, double* sqsum,
                                  int32 sqsumStep, ImageSize roi, float sumInit, double sqsumInit) {
    if (src == nullptr || sum == nullptr || sqsum == nullptr) return kNullPointer;
    if (!HasPixels(roi)) return kBadSize;
    const int64 width = roi.width;
    if (srcStep < width || sumStep < 4 * width + 4 || sqsumStep < 8 * width + 8) return kStepTooSmall;
    if (sumStep % 4 != 0 || sqsumStep % 8 != 0) return kStepNotMultiple;

    std::fill_n(sum, width + 1, sumInit);
    std::fill_n(sqsum, width + 1, sqsumInit);
    const auto sumRow = roi.width <= kMostIntegralPixels ? CurrentRowKernels().integral : SumLongRow;
    for (int32 i = 0; i < roi.height; ++i) {
        const uint8* pixel = RowAt(src, srcStep, i);
        const float* sumAbove = RowAt(sum, sumStep, i);
        const double* squaresAbove = RowAt(sqsum, sqsumStep, i);
        float* sums = RowAt(sum, sumStep, i + 1);
        double* squaresRow = RowAt(sqsum, sqsumStep, i + 1);
        sums[0] = sumInit;
        squaresRow[0] = sqsumInit;
        sumRow(pixel, roi.width, {sumAbove + 1, sums + 1, squaresAbove + 1, squaresRow + 1});
    }
    return kOk;
}

int32 primRectStdDev_32f_C1(const float* sum, int32 sumStep, const double* sqsum, int32 sqsumStep, float* dst,
                            int32 dstStep, ImageSize roi, ImageRect rect) {
    if (const int32 status = CheckRectStdDev(sum, sumStep, sqsum, sqsumStep, dst, dstStep, roi, rect)) return status;
    const RowKernels& kernels = CurrentRowKernels();
    for (int32 y = 0; y < roi.height; ++y) {
        const RectRows rows = RowsOf(sum, sumStep, sqsum, sqsumStep, rect, y);
        float* out = RowAt(dst, dstStep, y);
        kernels.stdDevs(rows, roi.width, out);
    }
    return kOk;
}

} // namespace generic

int32 RectStdDevUnderMask(const float* sum, int32 sumStep, const double* sqsum, int32 sqsumStep, float* dst,
                          int32 dstStep, ImageSize roi, ImageRect rect, const uint8* mask, int32 maskStep) {
    if (mask == nullptr) return kNullPointer;
    if (const int32 status = CheckRectStdDev(sum, sumStep, sqsum, sqsumStep, dst, dstStep, roi, rect)) return status;
    for (int32 y = 0; y < roi.height; ++y) {
        const RectRows rows = RowsOf(sum, sumStep, sqsum, sqsumStep, rect, y);
        const uint8* alive = RowAt(mask, maskStep, y);
        float* out = RowAt(dst, dstStep, y);
        for (int32 x = 0; x < roi.width; ++x) {
            if (alive[x] != 0) out[x] = StdDevAt(rows, x);
        }
    }
    return kOk;
}

} // namespace orvane
