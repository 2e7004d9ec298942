#include "detect/scale_rows.h"

#include "primitives/edge_bits.h"
#include "primitives/resize_frame.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr float kSumInit = -16777216.0F; // keeps float sums exact up to 33,554,432
constexpr int32 kLow = 8, kHigh = 24;    // the edge thresholds of the pruning
constexpr int32 kBlock = 64;             // pixels that the edge kernels take at a time
constexpr int32 kAhead = 3;              // rows that are fetched before they are sampled
constexpr int32 kCacheLine = 64;

int32 RoundUp(int32 n, int32 to) { return (n + to - 1) / to * to; }

} // namespace

bool ScaleRows::Reserve(ImageSize scaled) {
    const auto [width, height] = scaled;
    stride_ = RoundUp(width + 1 + kMostLanes, kMostLanes);
    lineStride_ = RoundUp(width + 2, kBlock) + kBlock;
    const int64 sums = int64{stride_} * (height + 1);
    const int64 words = int64{WordsOf(width)} * height;
    const int64 samples = int64{height} * lineStride_;
    const int64 gradients = int64{7} * lineStride_;
    return sum_.Ensure(sums) && shortSum_.Ensure(sums) && squares_.Ensure(sums) && columns_.Ensure(width) &&
           rows_.Ensure(height) && samplePlan_.Reserve(width) && samples_.Ensure(samples) && covered_.Ensure(height) &&
           gradients_.Ensure(gradients) && ridges_.Ensure(words) && edges_.Ensure(words) && marks_.Ensure(height);
}

/// Each row is sampled and passed on to the edges, which come two rows behind.
void ScaleRows::Make(ImageSize scaled, double inverseScale, ImageSize positions) {
    scaled_ = scaled;
    positions_ = positions;
    words_ = WordsOf(positions.width);
    FindPositions(scaled, inverseScale);
    const auto [width, height] = positions;
    for (int32 y = 0; y < scaled.height; ++y) {
        uint8* row = Samples(y);
        SampleRow(y, scaled.width, row);
        if (y >= height) continue;
        row[-1] = row[0]; // the border of the region is repeated, whatever the scale has beyond it
        covered_[y] = row[width];
        row[width] = row[width - 1];
        if (y >= 1) FindGradients(y - 1);
        if (y >= 2) FindRidges(y - 2);
        if (y < height - 1) continue;
        FindGradients(y);
        if (y >= 1) FindRidges(y - 1);
        FindRidges(y);
    }
    FollowRidges(ridges_.data(), edges_.data(), words_, height, marks_.data());
    MakeSums();
}

/// Whether the float plane may have to round a sum, so that it matters where sums begin.
bool ScaleRows::MayRound() const {
    return int64{255} * scaled_.width * scaled_.height >= static_cast<int64>(-2.0F * kSumInit);
}

bool ScaleRows::HasEdges(int32 y) const {
    const uint64* row = edges_.data() + std::ptrdiff_t{y} * words_;
    return std::any_of(row, row + words_, [](uint64 word) { return word != 0; });
}

/// From each row with edges on as far as its windows reach.
void ScaleRows::MakeSums() {
    const int32 reach = scaled_.height - positions_.height + 1;
    const bool all = MayRound();
    int32 made = -1; // the last row of sums that was
    for (int32 y = 0; y < positions_.height; ++y) {
        if (!all && !HasEdges(y)) continue;
        if (made < y) {
            made = y;
            BeginSums(y);
        }
        for (; made < y + reach; ++made) SumRowOf(made);
    }
    // The last one is the largest, and below 2^24 none was rounded.
    sumsAreExact_ = !all || SumRow(scaled_.height)[scaled_.width] < -kSumInit;
}

void ScaleRows::BeginSums(int32 y) {
    const std::ptrdiff_t at = std::ptrdiff_t{y} * stride_;
    std::fill_n(sum_.data() + at, scaled_.width + 1, kSumInit);
    std::fill_n(shortSum_.data() + at, scaled_.width + 1, uint16{0});
    std::fill_n(squares_.data() + at, scaled_.width + 1, 0U);
}

void ScaleRows::FindPositions(ImageSize scaled, double factor) {
    filled_.width = NearestPositions(grey_->width, factor, scaled.width, columns_.data());
    filled_.height = NearestPositions(grey_->height, factor, scaled.height, rows_.data());
    samplesPieces_ =
        kernels_->samplePieces != nullptr && samplePlan_.Make(columns_.data(), filled_.width, grey_->width);
}

void ScaleRows::SampleRow(int32 y, int32 width, uint8* row) const {
    if (y >= filled_.height) {
        std::fill_n(row, width, uint8{0});
        return;
    }
    Announce(y + kAhead);
    const uint8* from = RowAt(grey_->data, grey_->Step(), rows_[y]);
    if (samplesPieces_) {
        kernels_->samplePieces(from, samplePlan_.Pieces(), row);
    } else {
        kernels_->sample(from, columns_.data(), filled_.width, row);
    }
    std::fill(row + filled_.width, row + width, uint8{0});
}

/// Lets the processor fetch a row of the picture that will be sampled: of a large one every sample may be a cache line
/// of its own, and rows lie too far apart for it to foresee the next.
void ScaleRows::Announce(int32 y) const {
    if (y >= filled_.height) return;
    const uint8* row = RowAt(grey_->data, grey_->Step(), rows_[y]);
    for (int32 x = 0; x < grey_->width; x += kCacheLine) __builtin_prefetch(row + x);
}

/// The row of sums below a row of samples.
void ScaleRows::SumRowOf(int32 y) {
    uint8* samples = Samples(y);
    if (y < positions_.height) samples[positions_.width] = covered_[y];
    float* sum = sum_.data() + std::ptrdiff_t{y + 1} * stride_;
    uint32* squares = squares_.data() + std::ptrdiff_t{y + 1} * stride_;
    sum[0] = kSumInit;
    squares[0] = 0;
    uint16* shortSum = shortSum_.data() + std::ptrdiff_t{y + 1} * stride_;
    shortSum[0] = 0;
    kernels_->integral(samples, scaled_.width,
                       {SumRow(y) + 1, sum + 1, ShortSumRow(y) + 1, shortSum + 1, SquaresRow(y) + 1, squares + 1});
}

GradientRow ScaleRows::Gradients(int32 y) {
    int16* rows = gradients_.data() + std::ptrdiff_t{2} * (y % 3) * lineStride_;
    return {rows + 1, rows + lineStride_};
}

void ScaleRows::FindGradients(int32 y) {
    const int32 above = std::max(y - 1, 0), below = std::min(y + 1, positions_.height - 1);
    kernels_->gradients({Samples(above) - 1, Samples(y) - 1, Samples(below) - 1, positions_.width}, kLow, Gradients(y));
}

void ScaleRows::FindRidges(int32 y) {
    const int16* nothing = gradients_.data() + std::ptrdiff_t{6} * lineStride_ + 1;
    const int16* above = y > 0 ? Gradients(y - 1).magnitude : nothing;
    const int16* below = y + 1 < positions_.height ? Gradients(y + 1).magnitude : nothing;
    const std::ptrdiff_t at = std::ptrdiff_t{y} * words_;
    kernels_->ridges(above, Gradients(y), below, positions_.width, kHigh, ridges_.data() + at, edges_.data() + at);
}

} // namespace orvane
