// What the fused scan knows of a scale before it looks at windows: the edges, made in one walk over the rows, and the
// integral images where they leave windows, as the primitives make them one after the other.
#pragma once

#include "detect/scan_kernels.h"
#include "image/image_buffer.h"
#include "primitives/heap_array.h"

namespace orvane {

/// The planes of a scale. Storage is made for the first, largest scale and reused by all others.
class ScaleRows {
public:
    ScaleRows(const ScanKernels& kernels, const ImageBuffer& grey) : kernels_(&kernels), grey_(&grey) {}

    /// Goes over to another picture.
    void Use(const ScanKernels& kernels, const ImageBuffer& grey) {
        kernels_ = &kernels;
        grey_ = &grey;
    }

    /// Makes room for scales of up to this size, in the storage that it has where that fits. False when memory is
    /// exhausted.
    [[nodiscard]] bool Reserve(ImageSize scaled);

    /// Samples the picture, sums it and finds the edges.
    /// @param positions the windows of the scale, which are the region of the edge map
    void Make(ImageSize scaled, double inverseScale, ImageSize positions);

    /// Elements from one row of sums to the next, the same for all scales.
    int32 Stride() const { return stride_; }

    /// The sums have a row and a column more than the scale. Groups of windows at the end of a row may read beyond it.
    /// A row is good for windows that the edges leave; below rows without any, sums may begin anew.
    const float* SumRow(int32 y) const { return sum_.data() + std::ptrdiff_t{y} * stride_; }
    /// Sums of levels less kMiddleLevel, in 16 bits.
    const uint16* ShortSumRow(int32 y) const { return shortSum_.data() + std::ptrdiff_t{y} * stride_; }
    const uint32* SquaresRow(int32 y) const { return squares_.data() + std::ptrdiff_t{y} * stride_; }

    /// Whether the float plane had to round none of the scale's sums.
    bool SumsAreExact() const { return sumsAreExact_; }

    /// Words of a row of the edge map.
    int32 Words() const { return words_; }

    /// The windows of a row that the edges leave, a bit each, the first in the lowest bit; may be changed.
    uint64* EdgeRow(int32 y) { return edges_.data() + std::ptrdiff_t{y} * words_; }

private:
    void FindPositions(ImageSize scaled, double factor);
    void SampleRow(int32 y, int32 width, uint8* row) const;
    void Announce(int32 y) const;
    bool MayRound() const;
    bool HasEdges(int32 y) const;
    void MakeSums();
    void BeginSums(int32 y);
    void SumRowOf(int32 y);
    void FindGradients(int32 y);
    void FindRidges(int32 y);

    uint8* Samples(int32 y) { return samples_.data() + std::ptrdiff_t{y} * lineStride_ + 1; }
    GradientRow Gradients(int32 y);

    const ScanKernels* kernels_;
    const ImageBuffer* grey_;
    int32 stride_ = 0;
    int32 lineStride_ = 0; // elements of a row of samples or gradients
    int32 words_ = 0;
    ImageSize scaled_{0, 0};
    ImageSize positions_{0, 0};

    ImageSize filled_{0, 0};   // what the picture fills of the scale; beyond it is black
    HeapArray<int32> columns_; // of the picture, for each column of the scale
    HeapArray<int32> rows_;
    SamplePlan samplePlan_;
    bool samplesPieces_ = false; // whether rows of the present scale are sampled so

    HeapArray<float> sum_;
    HeapArray<uint16> shortSum_; // whose first column is always 0
    HeapArray<uint32> squares_;
    HeapArray<uint8> samples_;   // with a pixel more at both ends of a row
    HeapArray<uint8> covered_;   // those that the border of the windows' region stands for, a row each
    HeapArray<int16> gradients_; // three rows each of magnitudes and directions, and one of zeros
    HeapArray<uint64> ridges_;
    HeapArray<uint64> edges_;
    HeapArray<uint8> marks_;
    bool sumsAreExact_ = true;
};

} // namespace orvane
